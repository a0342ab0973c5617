#include "platform/headless/HeadlessDesktop.h"

#include <gmock/gmock.h>

#include "platform/appkit/NSApplication.h"
#include "support/HeadlessHost.h"

namespace velmora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(HeadlessDesktopTest, PressesAndReleasesReachTheHostInTheirOrderAndAtTheirTime) {
    HeadlessHost host;
    host.press(1);
    host.pause(40);
    host.then([&] {
        EXPECT_THAT(host.events(), ElementsAre("right down"));
        EXPECT_EQ(host.desktop().now(), std::chrono::milliseconds(40));
    });
    host.release(1);
    host.type("a");
    host.run();
    EXPECT_THAT(host.events(), ElementsAre("right down", "right up", "key down a", "key up a"));
}

}  // namespace
}  // namespace velmora
