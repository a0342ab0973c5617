#include "platform/headless/input/VirtualClock.h"

#include <gtest/gtest.h>

namespace velmora {
namespace {

using std::chrono::milliseconds;

TEST(VirtualClockTest, NeverGoesBack) {
    VirtualClock clock;
    clock.advanceTo(milliseconds(20));
    clock.advanceTo(milliseconds(10));
    EXPECT_EQ(clock.now(), milliseconds(20));
}

TEST(VirtualClockTest, KnowsWhoWantsToWakeFirst) {
    VirtualClock clock;
    const int a = 0;
    const int b = 0;
    EXPECT_FALSE(clock.earliestWakeUp());
    clock.setWakeUp(&a, milliseconds(30));
    clock.setWakeUp(&b, milliseconds(30));
    EXPECT_EQ(clock.earliestWakeUp()->sleeper, &a) << "of two at one moment who asked first";
    clock.setWakeUp(&a, milliseconds(40));
    EXPECT_EQ(clock.earliestWakeUp()->sleeper, &b);
    clock.setWakeUp(&b, std::nullopt);
    EXPECT_EQ(clock.earliestWakeUp()->at, milliseconds(40));
}

}  // namespace
}  // namespace velmora
