#pragma once

#include "platform/appkit/controls/NSCell.h"
#include "platform/appkit/drawing/NSBezierPath.h"

namespace velmora {

/// Draws a gesture string as the shape of its stroke, with a dot where it starts. A string that
/// begins with a digit is a list of the path's points instead: x and y in turn, whole numbers with
/// anything between them.
class VelmoraGestureCell final : public NSCell {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    /// A big one fills its frame, y growing upward; a small one takes 32 by 32 at the frame's
    /// origin, y growing downward, as in a table.
    void initBig(bool big) { isBig_ = big; }

    NSSize cellSize() override;
    void drawInteriorWithFrame_inView(NSRect frame, NSView* view) override;

    /// The shape, ten units a letter, y growing upward. Where it would come back to one of its
    /// points, it goes past it. Null for an empty string.
    NSBezierPathRef preprocessGesture() const;

    /// Whether one of the path's points is exactly this one.
    static bool path_containsPoint(const NSBezierPath& path, NSPoint point);

private:
    bool isBig_ = false;
};

}  // namespace velmora
