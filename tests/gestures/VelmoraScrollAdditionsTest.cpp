#include <gtest/gtest.h>

#include "gestures/VelmoraEventAdditions.h"
#include "gestures/VelmoraScrollViewAdditions.h"
#include "platform/appkit/NSApplication.h"
#include "support/HeadlessHost.h"

namespace velmora {
namespace {

/// Twenty points a line across and ten down; no origin beyond 50. Notes what it is asked.
struct View final : NSScrollView {
    struct Clip final : NSClipView {
        NSPoint constrainScrollPoint(NSPoint point) override {
            return {std::min(point.x, 50.0F), std::min(point.y, 50.0F)};
        }
        void scrollToPoint(NSPoint point) override {
            origin = point;
            copiedMeanwhile = copiesOnScroll();
        }
        NSPoint origin{20, 30};
        bool copiedMeanwhile = true;
    };
    std::shared_ptr<NSClipView> contentView() override { return clip; }
    float horizontalLineScroll() override { return 20; }
    float verticalLineScroll() override { return 10; }
    NSRect documentVisibleRect() override { return {clip->origin, {100, 100}}; }
    void reflectScrolledClipView(NSClipView& view) override { reflected = &view; }
    NSViewRef hitTest(NSPoint /*point*/) override { return nullptr; }
    std::shared_ptr<NSMenu> menuForEvent(const NSEventRef& /*event*/) override { return nullptr; }
    NSWindowRef window() override { return nullptr; }

    std::shared_ptr<Clip> clip = std::make_shared<Clip>();
    NSClipView* reflected = nullptr;
};

TEST(VelmoraScrollAdditionsTest, TheEventIsAWheelsAndTheViewFollowsIt) {
    HeadlessHost host;
    host.session().clock().advanceTo(std::chrono::microseconds(1900));
    VelmoraTargetWindowNum = 7;
    const NSEventRef event = velmoraScrollWheelEventWithDeltaX_deltaY(0.5F, -4);
    const NSEvent::Fields& fields = event->fields();
    EXPECT_EQ(event->type(), 22U);
    EXPECT_EQ(fields.location, (NSPoint{1, 1}));
    EXPECT_EQ(fields.modifierFlags, 0U);
    EXPECT_EQ(fields.windowNumber, 7);
    EXPECT_EQ(fields.deltaZ, 0);
    EXPECT_EQ(fields.timestamp, 0.001) << "whole milliseconds";

    for (const bool copies : {true, false}) {
        View view;
        view.clip->setCopiesOnScroll(copies);
        velmoraScroll(view, event);
        EXPECT_EQ(view.clip->origin, (NSPoint{10, 50}));
        EXPECT_FALSE(view.clip->copiedMeanwhile);
        EXPECT_EQ(view.clip->copiesOnScroll(), copies);
        EXPECT_EQ(view.reflected, view.clip.get());
    }
}

TEST(VelmoraScrollAdditionsTest, AWindowHearsOfMotionOnlyMeanwhileUnlessItDidBefore) {
    for (const bool before : {false, true}) {
        HeadlessHost host;
        host.writeSettings("VelmoraDefaults.plist", "{ isEnabled2 = YES; mouseButton2 = 2; }");
        host.menu({submenu("Editor", {item("About")})});
        host.window({.title = "Text", .frame = {{0, 0}, {600, 600}}});
        host.launch();
        const NSWindowRef window = NSApp().orderedWindows().at(0);
        window->setAcceptsMouseMovedEvents(before);
        host.moveTo(300, 300);
        host.press(2);
        host.moveBy(0, -9);
        host.then([&] {
            EXPECT_TRUE(window->acceptsMouseMovedEvents());
            EXPECT_EQ(*VelmoraTargetWindowNum, window->windowNumber());
        });
        host.release(2);
        host.run();
        EXPECT_EQ(window->acceptsMouseMovedEvents(), before);
    }
}

}  // namespace
}  // namespace velmora
