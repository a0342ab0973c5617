#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>

#include "gestures/VelmoraGestureFeedbackWindow.h"
#include "gestures/VelmoraScrollMotion.h"
#include "platform/appkit/NSEvent.h"
#include "platform/appkit/NSWindow.h"
#include "platform/appkit/drawing/NSCursor.h"
#include "platform/foundation/NSRunLoop.h"
#include "platform/runtime/ProcessWide.h"

namespace velmora {

class NSApplication;
struct NSNotification;

/// Turns a held button, or held modifier keys, and the pointer's motion into a gesture string: 1 to
/// 29 letters u, d, l, r, no two neighbours equal; or into scrolling. The router sends it an action
/// when an event matches an activation entry; the action runs an event loop of its own until the
/// stroke or the scrolling ends.
class VelmoraMouseHandling final : public NSObject {
public:
    /// The way to the host's events, which the router knows.
    struct Hooks {
        /// Places the system's hooks; see activate.
        std::function<void()> place;
        /// Hands an event to the host's own dispatch; null is nothing to do.
        std::function<void(const NSEventRef&)> passEventOn;
    };

    static Class& classObject();
    Class& isa() const override { return classObject(); }

    explicit VelmoraMouseHandling(Hooks hooks) : hooks_(std::move(hooks)) {}

    /// Places the system's hooks in front of the host's event dispatch, event fetch and menu
    /// command execution, and registers the object. Once a process.
    void activate();

    /// Captures a gesture. `event` is the press (or modifier change) as it was fetched, `trigger`
    /// the one that was dispatched. Passes the press on itself when no gesture came of it. The
    /// result is for the router to pass on: the last event that the loop fetched, or null.
    /// A press that comes while a capture runs, from a loop of the host inside it, is passed on.
    NSEventRef doGesture_triggerEvent(const NSEventRef& event, const NSEventRef& trigger);

    /// Scroll what has the keys by the mouse's motion, while the pointer stands still. The press is
    /// not passed on; the result, which the router passes on, is the event that ended it.
    NSEventRef doScrollWheelVertical_triggerEvent(const NSEventRef& event,
                                                  const NSEventRef& trigger);
    NSEventRef doScrollWheelHorizontal_triggerEvent(const NSEventRef& event,
                                                    const NSEventRef& trigger);
    NSEventRef doScrollWheelBoth_triggerEvent(const NSEventRef& event, const NSEventRef& trigger);
    NSEventRef doJogDial_triggerEvent(const NSEventRef& event, const NSEventRef& trigger);

    /// Looks for what is to scroll, and runs the loop.
    NSEventRef startTracking_triggerEvent(const NSEventRef& event, const NSEventRef& trigger);
    void startTracking();
    /// Takes the mouse's last motion, and scrolls when it is enough.
    void addToTracking();
    void endTracking();
    /// Ends a tracking; a capture goes on.
    void applicationWillResignActive(const NSNotification& notification);

    void startGesture();
    /// Takes one sample of the pointer.
    void addToGesture();
    void endGesture();
    void abortGesture();
    void gestureTimerFired(const NSTimerRef& timer);

private:
    class Loop;

    /// Acts on one event of the loop.
    void handleWithButton(const NSEventRef& next);
    void handleWithModifiersOnly(const NSEventRef& next, const NSEventRef& started);
    void leaveLoop();
    NSEventRef track(VelmoraScrollMotion::TrackMode mode, NSCursorRef (*cursor)(),
                     const NSEventRef& event, const NSEventRef& trigger);
    /// Has the responders of the window scroll, beginning with the view under the pointer, which
    /// gets the keys. Null for none.
    void chooseResponder(const NSWindowRef& window);
    void handleTracking(const NSEventRef& next);
    void deliver(const NSEventRef& scroll) const;

    Hooks hooks_;
    NSTimerRef gestureTimer_;
    /// Null until the first gesture that is drawn.
    std::shared_ptr<VelmoraGestureFeedbackWindow> feedbackWindow_;
    std::int32_t gestureTicks_ = 0;
    std::int32_t lastMX_ = 0;
    std::int32_t lastMY_ = 0;
    std::int32_t gestureIdx_ = 0;
    /// Byte 0 is a sentinel that no letter equals; a zero follows the last letter.
    std::array<char, 32> gestureString_{};
    /// A capture or a tracking is under way, or the loop that ran it has not returned yet.
    bool busy_ = false;
    bool gestureLoopActive_ = false;
    bool trackingLoopActive_ = false;
    bool hadGesture_ = false;
    /// Whether this capture is drawn, also when the preference changes during it.
    bool drawsTrace_ = false;
    NSCursorRef velmoraGesturesCursor_;
    VelmoraScrollMotion scrollMotion_{VelmoraScrollMotion::vertical};
    std::weak_ptr<NSWindow> scrollWindow_;
};

/// The one mouse-handling object of the process.
extern ProcessWide<std::shared_ptr<VelmoraMouseHandling>> VelmoraMouseHandler;

/// Where the current or last gesture began, in screen coordinates.
extern ProcessWide<NSPoint> VelmoraGestureStartPoint;

/// VelmoraGestureStartPoint, as the application's `velmoraGestureStartPoint`.
NSPoint velmoraGestureStartPoint(NSApplication& application);

}  // namespace velmora
