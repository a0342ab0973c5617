#pragma once

#include "platform/appkit/NSDrawnWindow.h"
#include "platform/appkit/drawing/NSBezierPath.h"

namespace velmora {

/// Draws a stroke: a dashed line in the user's hue with a white core.
class VelmoraGestureFeedbackView final : public NSDrawnView {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    /// The hue of all traces from here on, as VelmoraImageFactory has it.
    static void setHue(double hue);

    // Points are in screen coordinates.

    /// Drops what there was.
    void startAtPoint(NSPoint point);
    /// A trace must have been started.
    void addPoint(NSPoint point);
    void reset();

    /// The trace with its margin; what is drawn next has its lower left corner there.
    NSRect drawBounds();
    void drawRect(NSRect rect) override;

private:
    /// Null until the first trace.
    NSBezierPathRef path_;
    NSPoint orig_;
};

}  // namespace velmora
