#include "platform/appkit/NSApplication.h"

#include <gmock/gmock.h>

#include "platform/runtime/Class.h"
#include "support/HeadlessHost.h"

namespace velmora {
namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::IsEmpty;

NSEventRef eventOf(std::uint32_t type) {
    NSEvent::Fields fields;
    fields.type = type;
    return std::make_shared<NSEvent>(fields);
}

NSEventRef fetch(std::uint32_t mask, Time until, bool dequeue = true) {
    return NSApp().nextEventMatchingMask_untilDate_inMode_dequeue(mask, until, NSDefaultRunLoopMode,
                                                                  dequeue);
}

constexpr std::uint32_t bit(std::uint32_t type) {
    return 1U << type;
}

TEST(NSApplicationTest, AFetchTakesTheFirstEventOfTheMaskAndLeavesTheOthersInTheirOrder) {
    const HeadlessHost host;
    const std::vector<NSEventRef> posted = {eventOf(NSKeyDown), eventOf(NSLeftMouseDown),
                                            eventOf(NSKeyDown), eventOf(NSOtherMouseDragged)};
    for (const NSEventRef& event : posted) NSApp().postEvent(event);
    EXPECT_EQ(fetch(bit(NSOtherMouseDragged), distantPast), posted[3]);
    EXPECT_EQ(fetch(bit(NSLeftMouseDown), distantPast), posted[1]);
    EXPECT_EQ(fetch(bit(NSLeftMouseDown), distantPast), nullptr);
    EXPECT_EQ(fetch(NSAnyEventMask, distantPast), posted[0]);
    EXPECT_EQ(fetch(NSAnyEventMask, distantPast), posted[2]);
}

TEST(NSApplicationTest, AnEventThatIsOnlyLookedAtStaysAndIsNotTheCurrentOne) {
    const HeadlessHost host;
    const NSEventRef event = eventOf(NSKeyDown);
    NSApp().postEvent(event);
    EXPECT_EQ(fetch(NSAnyEventMask, distantPast, false), event);
    EXPECT_EQ(NSApp().currentEvent(), nullptr);
    EXPECT_EQ(fetch(NSAnyEventMask, distantPast, true), event);
    EXPECT_EQ(NSApp().currentEvent(), event);
    EXPECT_FALSE(NSApp().hasEvents());
}

TEST(NSApplicationTest, AFetchEndsAtItsDeadlineOrWithTheFirstEvent) {
    HeadlessHost host;
    EXPECT_EQ(fetch(NSAnyEventMask, milliseconds(10)), nullptr);
    EXPECT_EQ(host.desktop().now(), milliseconds(10));
    host.pause(20);
    host.type("a");
    const NSEventRef event = fetch(NSAnyEventMask, milliseconds(100));
    ASSERT_NE(event, nullptr);
    EXPECT_EQ(event->type(), NSKeyDown);
    EXPECT_EQ(host.desktop().now(), milliseconds(30));
    EXPECT_EQ(event->timestamp(), 0.03);
    EXPECT_EQ(fetch(bit(NSLeftMouseDown), milliseconds(50)), nullptr) << "a key is not waited for";
    EXPECT_EQ(host.desktop().now(), milliseconds(50));
}

TEST(NSApplicationTest, ADeadlineThatIsOverStillFindsWhatIsThere) {
    HeadlessHost host;
    host.session().clock().advanceTo(milliseconds(100));
    EXPECT_EQ(fetch(NSAnyEventMask, milliseconds(50)), nullptr);
    NSApp().postEvent(eventOf(NSKeyUp));
    EXPECT_NE(fetch(NSAnyEventMask, milliseconds(50)), nullptr);
    EXPECT_EQ(host.desktop().now(), milliseconds(100));
}

TEST(NSApplicationTest, AnActionGoesToItsTargetOrElseToTheApplication) {
    class Receiver final : public NSObject {
    public:
        static Class& classObject() {
            static auto* object = &(new Class("ApplicationTestReceiver", &NSObject::classObject()))
                                       ->method<&Receiver::open>("open:");
            return *object;
        }
        Class& isa() const override { return classObject(); }
        void open(const Id& sender) { senders.push_back(sender); }
        std::vector<Id> senders;
    };
    const HeadlessHost host;
    const auto receiver = std::make_shared<Receiver>();
    const Id sender = std::make_shared<NSObject>();
    EXPECT_TRUE(NSApp().sendAction_to_from(Selector::named("open:"), receiver, sender));
    EXPECT_THAT(receiver->senders, ElementsAre(sender));
    EXPECT_FALSE(NSApp().sendAction_to_from(Selector::named("close:"), receiver, sender));
    EXPECT_FALSE(NSApp().sendAction_to_from(Selector::named("open:"), nullptr, sender));
    EXPECT_FALSE(NSApp().sendAction_to_from(Selector(), receiver, sender));
}

TEST(NSApplicationTest, AllEventsOfTheQueueAreDeliveredAndThoseThatComeMeanwhile) {
    HeadlessHost host;
    host.menu({itemWithKey("Type", "type:", "a", 0)});
    host.desktop().setOnCommand([](NSMenuItem&) { NSApp().postEvent(eventOf(NSLeftMouseDown)); });
    NSEvent::Fields key;
    key.type = NSKeyDown;
    key.charactersIgnoringModifiers = "a";
    NSApp().postEvent(std::make_shared<NSEvent>(key));
    NSApp().deliverEvents();
    EXPECT_THAT(host.events(), ElementsAre("key down a", "left down"));
}

}  // namespace
}  // namespace velmora
