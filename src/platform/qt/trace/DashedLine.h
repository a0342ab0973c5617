#pragma once

#include <QLineF>
#include <vector>

#include "platform/appkit/drawing/NSBezierPath.h"

namespace velmora {

/// Cuts a line that grows from point to point into its dashes, which run on round the corners.
/// Lengths and points are in the units of the path.
class DashedLine {
public:
    DashedLine() = default;
    explicit DashedLine(const StrokeStyle& style);

    /// Begins anew, with the first dash.
    void moveTo(QPointF point);
    /// What of the way to the point is drawn, in pieces that are short.
    std::vector<QLineF> lineTo(QPointF point);

private:
    void advance(double length);

    /// Lengths on and off in turn, as many of each; empty for a solid line.
    std::vector<double> lengths_;
    double phase_ = 0;
    QPointF point_;
    /// Which of the lengths the line is in, and what is left of it.
    std::size_t index_ = 0;
    double left_ = 0;
};

}  // namespace velmora
