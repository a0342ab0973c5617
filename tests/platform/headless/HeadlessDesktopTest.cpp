#include "platform/headless/HeadlessDesktop.h"

#include <gmock/gmock.h>

#include "platform/appkit/NSApplication.h"
#include "platform/appkit/NSView.h"
#include "platform/runtime/Class.h"
#include "support/HeadlessHost.h"

namespace velmora {
namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::IsEmpty;

WindowDescription window(const std::string& title, NSRect frame) {
    WindowDescription description;
    description.title = title;
    description.frame = frame;
    return description;
}

/// A loop inside the host, as a stroke is one: it takes all events until one of that type.
std::vector<NSEventRef> eventsUntil(std::uint32_t type) {
    std::vector<NSEventRef> events;
    while (events.empty() || events.back()->type() != type) {
        const Time until = currentDesktop()->now() + milliseconds(10);
        if (NSEventRef event = NSApp().nextEventMatchingMask_untilDate_inMode_dequeue(
                NSAnyEventMask, until, NSDefaultRunLoopMode, true)) {
            events.push_back(std::move(event));
        }
    }
    return events;
}

TEST(HeadlessDesktopTest, PressesAndReleasesReachTheHostInTheirOrderAndAtTheirTime) {
    HeadlessHost host;
    host.press(1);
    host.pause(40);
    host.then([&] {
        EXPECT_THAT(host.events(), ElementsAre("right down"));
        EXPECT_EQ(host.desktop().now(), milliseconds(40));
    });
    host.release(1);
    host.type("a");
    host.run();
    EXPECT_THAT(host.events(), ElementsAre("right down", "right up", "key down a", "key up a"));
}

TEST(HeadlessDesktopTest, ThePointerIsOnItsWayAtEveryMoment) {
    HeadlessHost host;
    std::vector<NSPoint> seen;
    const auto look = [&] { seen.push_back(host.desktop().mouseLocation()); };
    host.moveTo(100, 50);
    host.then([&] {
        for (const int ms : {0, 25, 50, 100, 150})
            host.session().input().insert(milliseconds(ms), look);
    });
    host.moveBy(200, -100, 100);
    host.advance(100);
    EXPECT_THAT(seen, ElementsAre(NSPoint{100, 50}, NSPoint{150, 25}, NSPoint{200, 0},
                                  NSPoint{300, -50}, NSPoint{300, -50}));
}

TEST(HeadlessDesktopTest, MotionIsAnEventEachEightMillisecondsAndOneAtTheEnd) {
    HeadlessHost host;
    std::vector<NSEventRef> events;
    host.desktop().addWindow(window("Main", {{100, 100}, {400, 300}}));
    host.moveTo(200, 200);
    host.press(0);
    host.moveBy(20, 0, 20);
    host.release(0);
    NSEventRef pressed;
    host.then([&] { pressed = NSApp().currentEvent(); });
    host.run();
    EXPECT_THAT(host.events(), ElementsAre("left down", "left up"));
    EXPECT_THAT(host.motion(), ElementsAre("moved", "left dragged"));
    EXPECT_EQ(host.session().transcript().entries()[2].times, 3) << "after 8, 16 and 20 ms";
}

TEST(HeadlessDesktopTest, MouseEventsAreNumberedAndSpeakOfTheWindowWhereTheButtonWentDown) {
    HeadlessHost host;
    WindowDescription main = window("Main", {{100, 100}, {400, 300}});
    main.drawers.push_back({{{500, 100}, {100, 300}}, {}});
    host.window(main);
    host.window(window("Behind", {{0, 0}, {1000, 1000}}));
    std::vector<NSEventRef> events;
    host.moveTo(550, 150);
    host.press(2);
    host.hold(NSShiftKeyMask);
    host.moveTo(900, 900);
    host.release(2);
    host.press(7);
    host.then([] {});
    host.type("x");
    events = eventsUntil(NSKeyDown);
    struct Row {
        std::uint32_t type;
        int button;
        int window;
        NSPoint location;
        std::uint32_t flags;
    };
    const std::vector<Row> rows = {{NSMouseMoved, 0, 2, {50, 50}, 0},
                                   {NSOtherMouseDown, 2, 2, {50, 50}, 0},
                                   {NSFlagsChanged, 0, 0, {550, 150}, NSShiftKeyMask},
                                   {NSOtherMouseDragged, 2, 2, {400, 800}, NSShiftKeyMask},
                                   {NSOtherMouseUp, 2, 2, {400, 800}, NSShiftKeyMask},
                                   {NSOtherMouseDown, 7, 3, {900, 900}, NSShiftKeyMask},
                                   {NSKeyDown, 0, 0, {900, 900}, NSShiftKeyMask}};
    ASSERT_EQ(events.size(), rows.size());
    int number = 0;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const NSEvent& event = *events[i];
        EXPECT_EQ(event.type(), rows[i].type) << i;
        EXPECT_EQ(event.buttonNumber(), rows[i].button) << i;
        EXPECT_EQ(event.windowNumber(), rows[i].window) << i;
        EXPECT_EQ(event.locationInWindow(), rows[i].location) << i;
        EXPECT_EQ(event.modifierFlags(), rows[i].flags) << i;
        if (isMouseEventType(event.type())) {
            EXPECT_GT(event.eventNumber(), number) << i;
            number = event.eventNumber();
        }
    }
}

TEST(HeadlessDesktopTest, AtOneMomentTimersComeBeforeInput) {
    class Target final : public NSObject {
    public:
        static Class& classObject() {
            static auto* object = &(new Class("DesktopTestTarget", &NSObject::classObject()))
                                       ->method<&Target::fired>("fired:");
            return *object;
        }
        Class& isa() const override { return classObject(); }
        void fired(const NSTimerRef&) { seen = NSApp().hasEvents() ? "input" : "no input"; }
        std::string seen;
    };
    HeadlessHost host;
    const auto target = std::make_shared<Target>();
    NSTimer::scheduledTimerWithTimeInterval_target_selector_userInfo_repeats(
        0.01, target, Selector::named("fired:"), nullptr, false);
    host.pause(10);
    host.type("a");
    eventsUntil(NSKeyDown);
    EXPECT_EQ(target->seen, "no input");
    EXPECT_EQ(host.desktop().now(), milliseconds(10));
}

TEST(HeadlessDesktopTest, ALoopThatStillWaitsAtTheEndSeesEverythingReleasedAndThenEscape) {
    HeadlessHost host;
    host.hold(NSControlKeyMask);
    host.press(1);
    host.menu({itemWithKey("Loop", "loop:", "l", NSControlKeyMask)});
    host.desktop().setOnCommand([](NSMenuItem&) { eventsUntil(NSKeyUp); });
    host.then([&] { host.session().user().keyDown(*keyNamed("l")); });
    host.run();
    EXPECT_THAT(host.commands(), ElementsAre("Loop")) << "and the loop has ended";
    EXPECT_FALSE(host.session().user().letEverythingGo());
}

TEST(HeadlessDesktopTest, ALoopThatNothingEndsIsGivenUp) {
    for (const Time deadline : {distantFuture, Time::zero()}) {
        HeadlessHost host;
        host.then([deadline] {
            while (true) {
                NSApp().nextEventMatchingMask_untilDate_inMode_dequeue(
                    NSAnyEventMask,
                    deadline == distantFuture ? deadline
                                              : desktop().now() + std::chrono::milliseconds(10),
                    NSDefaultRunLoopMode, true);
            }
        });
        EXPECT_THROW(host.run(), HeadlessSession::Endless);
        EXPECT_LE(host.session().clock().now(), std::chrono::minutes(1));
    }
}

TEST(HeadlessDesktopTest, WhileThePointerIsPinnedEachMotionGoesOnFromTheHand) {
    HeadlessHost host;
    host.moveTo(100, 100);
    host.then([] { desktop().associateMouseAndPointer(false); });
    host.moveBy(10, 0);
    host.moveBy(10, -5);
    host.run();
    const CGMouseDelta delta = desktop().lastMouseDelta();
    EXPECT_EQ(delta.x, 20);
    EXPECT_EQ(delta.y, 5);
    EXPECT_EQ(desktop().mouseLocation(), (NSPoint{100, 100}));
}

TEST(HeadlessDesktopTest, TheKeyWindowIsTheOneThatWasMadeKeyAndOnlyWhileTheHostIsActive) {
    HeadlessHost host;
    host.window(window("Front", {{0, 0}, {100, 100}}));
    host.window(window("Back", {{50, 50}, {100, 100}}));
    EXPECT_EQ(host.desktop().keyWindow(), nullptr);
    host.activate();
    const auto front = host.desktop().windowTitled("Front");
    const auto back = host.desktop().windowTitled("Back");
    EXPECT_EQ(host.desktop().keyWindow(), front);
    back->makeKeyWindow();
    EXPECT_EQ(host.desktop().keyWindow(), back);
    EXPECT_THAT(host.madeKey(), ElementsAre("Back"));
    EXPECT_THAT(host.desktop().orderedWindows(), ElementsAre(front, back)) << "the order is kept";
    host.desktop().focusWindow(back);
    EXPECT_THAT(host.desktop().orderedWindows(), ElementsAre(back, front));
    host.desktop().closeWindow(*back);
    EXPECT_EQ(host.desktop().keyWindow(), front);
    host.resign();
    EXPECT_EQ(host.desktop().keyWindow(), nullptr);
}

TEST(HeadlessDesktopTest, TheDeepestViewAtAPointIsHit) {
    HeadlessHost host;
    WindowDescription main = window("Main", {{100, 100}, {300, 200}});
    main.titleBar = 20;
    ViewDescription inner{{{10, 10}, {50, 50}}, ContextMenuDescription{{item("Inner")}, {}}, {}};
    ViewDescription outer{{{20, 20}, {200, 100}}, std::nullopt, {inner}};
    ViewDescription above{{{200, 20}, {50, 50}}, ContextMenuDescription{{item("Above")}, {}}, {}};
    main.views = {outer, above};
    host.window(main);
    const auto made = host.desktop().windowTitled("Main");
    const auto menuAt = [&](float x, float y) -> std::string {
        const NSViewRef view = made->contentView()->hitTest({x, y});
        if (!view) return "nothing";
        EXPECT_EQ(view->window(), made);
        const NSMenuRef menu = view->menuForEvent(nullptr);
        return menu ? menu->itemAtIndex(0)->title() : "no menu";
    };
    EXPECT_EQ(menuAt(35, 35), "Inner");
    EXPECT_EQ(menuAt(25, 25), "no menu");
    EXPECT_EQ(menuAt(210, 60), "Above") << "of two at one place the later is in front";
    EXPECT_EQ(menuAt(5, 5), "no menu") << "the content view itself";
    EXPECT_EQ(menuAt(5, 190), "nothing") << "the title bar";
}

TEST(HeadlessDesktopTest, AMenuIsFilledWhenItIsOpened) {
    HeadlessHost host;
    ItemDescription recent = lazySubmenu("Recent", {item("a"), lazySubmenu("More", {item("b")})});
    ItemDescription opens = disabled(item("Paste"));
    opens.enabledWhenOpened = true;
    host.menu({submenu("File", {recent, opens})});
    EXPECT_EQ(host.itemAt("File/Recent/a"), nullptr);
    openMenu(*host.itemAt("File/Recent")->submenu());
    const NSMenuItemRef filled = host.itemAt("File/Recent/a");
    ASSERT_NE(filled, nullptr);
    EXPECT_EQ(pathOfMenuItem(*filled), "File/Recent/a");
    EXPECT_EQ(host.itemAt("File/Recent/More/b"), nullptr) << "each menu by itself";
    openMenu(*host.itemAt("File/Recent")->submenu());
    EXPECT_EQ(host.itemAt("File/Recent/a"), filled) << "it is filled once";
    EXPECT_FALSE(host.itemAt("File/Paste")->isEnabled());
    openMenu(*host.itemAt("File")->submenu());
    EXPECT_TRUE(host.itemAt("File/Paste")->isEnabled());
}

}  // namespace
}  // namespace velmora
