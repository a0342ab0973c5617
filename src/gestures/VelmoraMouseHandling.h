#pragma once

#include <array>
#include <cstdint>
#include <memory>

#include "platform/appkit/NSCursor.h"
#include "platform/appkit/NSEvent.h"
#include "platform/foundation/NSRunLoop.h"
#include "platform/runtime/ProcessWide.h"

namespace velmora {

struct NSNotification;

/// Turns a held button, or held modifier keys, and the pointer's motion into a gesture string: 1 to
/// 29 letters u, d, l, r, no two neighbours equal. The router sends it an action when an event
/// matches an activation entry; the action runs an event loop of its own until the stroke ends.
class VelmoraMouseHandling final : public NSObject {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    /// Places the system's hooks in front of the host's event dispatch, event fetch and menu
    /// command execution, and registers the object. Once a process.
    void activate();

    /// Captures a gesture. `event` is the press (or modifier change) as it was fetched, `trigger`
    /// the one that was dispatched. Passes the press on itself when no gesture came of it. The
    /// result is for the router to pass on: the last event that the loop fetched, or null.
    /// A press that comes while a capture runs, from a loop of the host inside it, is passed on.
    NSEventRef doGesture_triggerEvent(const NSEventRef& event, const NSEventRef& trigger);

    void startGesture();
    /// Takes one sample of the pointer.
    void addToGesture();
    void endGesture();
    void abortGesture();
    void gestureTimerFired(const NSTimerRef& timer);

private:
    /// Acts on one event of the loop.
    void handleWithButton(const NSEventRef& next);
    void handleWithModifiersOnly(const NSEventRef& next, const NSEventRef& started);
    void leaveLoop();

    NSTimerRef gestureTimer_;
    std::int32_t gestureTicks_ = 0;
    std::int32_t lastMX_ = 0;
    std::int32_t lastMY_ = 0;
    std::int32_t gestureIdx_ = 0;
    /// Byte 0 is a sentinel that no letter equals; a zero follows the last letter.
    std::array<char, 32> gestureString_{};
    bool capturing_ = false;
    bool gestureLoopActive_ = false;
    bool hadGesture_ = false;
    NSCursorRef velmoraGesturesCursor_;
};

/// The one mouse-handling object of the process.
extern ProcessWide<std::shared_ptr<VelmoraMouseHandling>> VelmoraMouseHandler;

/// Where the current or last gesture began, in screen coordinates.
extern ProcessWide<NSPoint> VelmoraGestureStartPoint;

}  // namespace velmora
