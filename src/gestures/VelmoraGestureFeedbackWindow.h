#pragma once

#include "gestures/VelmoraGestureFeedbackView.h"
#include "platform/foundation/NSRunLoop.h"

namespace velmora {

/// The trace of a stroke on the screen: shows it as it grows, just as large as it is, and lets it
/// fade when the stroke has ended.
class VelmoraGestureFeedbackWindow final : public NSDrawnWindow {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    VelmoraGestureFeedbackWindow();

    // Points are in screen coordinates.

    /// Begins a new trace, also while the last one fades.
    void startAtPoint(NSPoint point);
    void addPoint(NSPoint point);
    /// Starts the fade, after which the window is hidden.
    void goAway(const Id& sender);
    void dimWindow(const NSTimerRef& timer);
    /// Fits the window to the trace.
    void resizeToPath();

private:
    NSTimerRef addFadeTimer(RunLoopMode mode);
    void stopFading();

    std::shared_ptr<VelmoraGestureFeedbackView> view_;
    float myAlpha_ = 1;
    /// The fade's timers for the host's own loop and for a modal panel's; null when not fading.
    NSTimerRef timerA_;
    NSTimerRef timerB_;
    /// What the view was handed last.
    NSPoint lastPoint_;
};

}  // namespace velmora
