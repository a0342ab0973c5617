#include "gestures/VelmoraMouseHandling.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "gestures/VelmoraGestures.h"
#include "gestures/VelmoraWindowAdditions.h"
#include "host/VelmoraApplicationAdditions.h"
#include "platform/appkit/NSApplication.h"
#include "platform/appkit/NSView.h"
#include "platform/port/Desktop.h"
#include "platform/runtime/Class.h"
#include "preferences/VelmoraActivation.h"
#include "support/HeadlessHost.h"

namespace velmora {
namespace {

/// Slot 0 is the right button.
struct Host : HeadlessHost {
    explicit Host(const std::string& preferences = "{ isEnabled0 = YES; mouseButton0 = 1; }")
        : HeadlessHost("Editor") {
        writeSettings("VelmoraDefaults.plist", preferences);
        menu({submenu("Editor", {item("About")}), submenu("File", {item("Save")})});
        launch();
        moveTo(400, 400);
        run();
    }
    /// What gesture a path of points, rested at for two samples each, gives: "" for a click.
    std::string gestureOf(const std::vector<NSPoint>& points) {
        moveTo(points[0].x, points[0].y);
        press(1);
        for (const NSPoint& point : points) {
            moveTo(point.x, point.y);
            pause(20);
        }
        release(1);
        const std::size_t before = trace().size();
        run();
        const std::vector<std::string> all = trace();
        for (std::size_t i = before; i < all.size(); ++i) {
            if (all[i].starts_with("gesture \"")) return all[i].substr(9, all[i].size() - 10);
        }
        return "";
    }
};

TEST(VelmoraMouseHandlingTest, StepsAreTakenBeyondTheSizeAlongTheDominantAxis) {
    struct Row {
        const char* name;
        std::vector<NSPoint> points;
        const char* gesture;
    };
    const std::vector<Row> rows{
        {"no motion", {{400, 400}}, ""},
        {"exactly the size away", {{400, 400}, {415, 400}}, ""},
        {"exactly the size away, aslant", {{400, 400}, {409, 412}}, ""},
        {"one pixel more", {{400, 400}, {416, 400}}, "r"},
        {"up is where y grows", {{400, 400}, {400, 420}}, "u"},
        {"down", {{400, 400}, {400, 380}}, "d"},
        {"a tie is horizontal", {{400, 400}, {380, 420}}, "l"},
        {"further the same way", {{400, 400}, {420, 400}, {440, 402}, {460, 400}}, "r"},
        {"right, up, right", {{400, 400}, {420, 400}, {420, 420}, {440, 420}}, "rur"},
        {"a collapsed step moves the origin",
         {{400, 400}, {416, 400}, {432, 400}, {440, 414}},
         "ru"},
        {"fractions are cut toward zero", {{400.9F, 400}, {416.0F, 400}}, "r"},
        {"also left of the main screen", {{-400.9F, 400}, {-415.9F, 400}}, ""},
    };
    for (const Row& row : rows) {
        Host host;
        EXPECT_EQ(host.gestureOf(row.points), row.gesture) << row.name;
        EXPECT_EQ(host.beeps(), *row.gesture ? 1 : 0) << row.name;
    }
}

TEST(VelmoraMouseHandlingTest, TwentyNineLettersAreAGestureAndAFurtherStepGivesItUp) {
    for (const int steps : {29, 30}) {
        for (const bool lastInTheSameDirection : {false, true}) {
            Host host;
            std::vector<NSPoint> points{{400, 400}};
            for (int i = 1; i <= steps; ++i) {
                NSPoint next = points.back();
                const bool horizontal = (i % 2 != 0) != (i == 30 && lastInTheSameDirection);
                (horizontal ? next.x : next.y) += 20;
                points.push_back(next);
            }
            const std::string gesture = host.gestureOf(points);
            EXPECT_EQ(gesture.size(), steps == 29 ? 29U : 0U);
            EXPECT_EQ(host.beeps(), 1);  // unbound, or too long
            EXPECT_EQ(host.events().front(), steps == 29 ? "right up" : "right down");
        }
    }
}

TEST(VelmoraMouseHandlingTest, AnEventInTheWaitThatASampleHasEndedIsOnlyPassedOn) {
    Host host("{ isEnabled0 = YES; mouseButton0 = 1; gestureTimeout = 100; }");
    host.press(1);
    host.moveBy(60, 0, 30);
    // Rests beyond the timeout; the release comes between the abort and the end of that wait.
    host.pause(112);
    for (int i = 0; i < 20; ++i) {
        host.then([] {});
        host.pause(1);
    }
    host.release(1);
    host.run();
    EXPECT_EQ(host.events(), (std::vector<std::string>{"right down", "right up"}));
    EXPECT_EQ(host.beeps(), 0);
}

TEST(VelmoraMouseHandlingTest, APressInsideACaptureIsTheHosts) {
    Host host;
    host.press(1);
    host.moveBy(60, 0, 50);
    host.then([&] {
        NSEvent::Fields fields;
        fields.type = NSRightMouseDown;
        fields.buttonNumber = 1;
        fields.eventNumber = 4711;
        NSApp().sendEvent(std::make_shared<NSEvent>(fields));
    });
    host.moveBy(0, 60, 50);
    host.release(1);
    host.run();
    EXPECT_EQ(host.trace().back(), "gesture \"ru\"");
    EXPECT_EQ(host.events(), (std::vector<std::string>{"right down", "right up"}));
    // Only the timers of the trace go on, until it has faded.
    host.advance(110);
    EXPECT_FALSE(NSRunLoop::currentRunLoop().nextFireDate(NSDefaultRunLoopMode).has_value());
}

TEST(VelmoraMouseHandlingTest, AnExceptionOfTheHostsLeavesNothingBehind) {
    for (const int button : {1, 2}) {
        Host host("{ isEnabled0 = YES; mouseButton0 = 1; isEnabled2 = YES; mouseButton2 = 2; }");
        host.press(button);
        host.moveBy(60, 0, 20);
        host.then([&] {
            EXPECT_TRUE(host.desktop().showsCursor());
            EXPECT_TRUE(NSApp().isFetching());
            throw std::runtime_error("of the host's");
        });
        EXPECT_THROW(host.run(), std::runtime_error);
        host.release(button);
        host.moveTo(100, 100);
        host.run();
        EXPECT_FALSE(host.desktop().showsCursor());
        EXPECT_FALSE(NSApp().isFetching());
        EXPECT_EQ(host.desktop().mouseLocation().x, 100);
        // The next stroke is one again.
        EXPECT_EQ(host.gestureOf({{400, 400}, {460, 400}}), "r");
    }
}

TEST(VelmoraMouseHandlingTest, AnIndexOutsideTheEntriesIsNoModifierEntry) {
    Host host;
    VelmoraIndex = VelmoraSlotCount;
    NSEvent::Fields fields;
    const auto event = [&](NSEventType type) {
        fields.type = type;
        return std::make_shared<NSEvent>(fields);
    };
    const NSEventRef press = event(NSRightMouseDown);
    // Keys alone would have it ended by a dragged button.
    host.then([&] { NSApp().postEvent(event(NSRightMouseDragged)); });
    host.moveTo(460, 400);
    host.pause(20);
    host.then([&] { NSApp().postEvent(event(NSRightMouseUp)); });
    (*VelmoraMouseHandler)->doGesture_triggerEvent(press, press);
    EXPECT_EQ(host.trace().back(), "gesture \"r\"");
}

TEST(VelmoraMouseHandlingTest, TheWindowUnderTheStartIsTheWindowOrOneOfItsDrawers) {
    Host host;
    WindowDescription description;
    description.title = "Letter";
    description.frame = {{100, 100}, {200, 200}};
    description.drawers = {{{{300, 120}, {50, 100}}, {}}};
    host.window(description);
    const NSWindowRef window = NSApp().orderedWindows().at(0);
    const NSWindowRef drawer = window->drawers().at(0)->contentView()->window();
    const std::vector<std::pair<NSPoint, NSWindowRef>> rows{
        {{150, 150}, window}, {{100, 300}, window},  {{99, 150}, nullptr},  {{150, 100}, nullptr},
        {{320, 150}, drawer}, {{320, 230}, nullptr}, {{500, 500}, nullptr},
    };
    for (const auto& [point, hit] : rows) {
        VelmoraGestureStartPoint = point;
        EXPECT_EQ(velmoraCheckForHit(*window), hit) << point.x << ", " << point.y;
    }
}

TEST(VelmoraMouseHandlingTest, AContextMenuIsSearchedByPathOnly) {
    Host host;
    NSMenu menu("ignored");
    menu.addItem(std::make_shared<NSMenuItem>("Copy", Selector::named("copy:"), ""));
    const VelmoraSettingRef definition = VelmoraSetting::newSetting();
    definition->setSelector("copy:");
    const auto gestures = VelmoraGestures::activeInstance();
    const std::vector<std::pair<std::string, bool>> rows{
        {"Context Menu: Copy", true},
        {"Copy", true},
        {"Context Menu: Cut", false},
        {"Context Menu: ignored/Copy", false},
    };
    for (const auto& [path, found] : rows) {
        definition->setPath(path);
        EXPECT_EQ(gestures->findMenuItem_inMenu(*definition, menu) != nullptr, found) << path;
    }
}

}  // namespace
}  // namespace velmora
