#pragma once

#include <memory>
#include <vector>

#include "platform/appkit/drawing/NSAffineTransform.h"

namespace velmora {

enum NSLineCapStyle { NSButtLineCapStyle, NSRoundLineCapStyle, NSSquareLineCapStyle };
enum NSLineJoinStyle { NSMiterLineJoinStyle, NSRoundLineJoinStyle, NSBevelLineJoinStyle };
enum NSBezierPathElement { NSMoveToBezierPathElement, NSLineToBezierPathElement };

/// How a path is stroked; lengths in the path's own units.
struct StrokeStyle {
    float width = 1;
    NSLineCapStyle cap = NSButtLineCapStyle;
    NSLineJoinStyle join = NSMiterLineJoinStyle;
    /// Lengths on and off in turn; empty for a solid line.
    std::vector<float> dash;
    float dashPhase = 0;

    bool operator==(const StrokeStyle&) const = default;
};

struct PathElement {
    NSBezierPathElement kind = NSMoveToBezierPathElement;
    NSPoint point;
};

/// The elements of a path at one moment: the first `count` of them, which stay as they are however
/// the path goes on.
struct PathElements {
    std::shared_ptr<const std::vector<PathElement>> elements;
    std::size_t count = 0;

    const PathElement* begin() const { return elements->data(); }
    const PathElement* end() const { return begin() + count; }
};

/// Lines from point to point. Adding one costs the same however long the path is.
class NSBezierPath {
public:
    static std::shared_ptr<NSBezierPath> bezierPath() { return std::make_shared<NSBezierPath>(); }

    void moveToPoint(NSPoint point) { add(NSMoveToBezierPathElement, point); }
    /// The path must have a point.
    void lineToPoint(NSPoint point) { add(NSLineToBezierPathElement, point); }
    void removeAllPoints();
    void transformUsingAffineTransform(const NSAffineTransform& transform);

    int elementCount() const { return static_cast<int>(elements_->size()); }
    /// Stores the element's one point. The index must be below elementCount.
    NSBezierPathElement elementAtIndex_associatedPoints(int index, NSPoint* points) const;
    /// The smallest rectangle with all points; empty, at the origin, without any.
    NSRect bounds() const;
    PathElements elements() const { return {elements_, elements_->size()}; }

    void setLineCapStyle(NSLineCapStyle cap) { style_.cap = cap; }
    void setLineJoinStyle(NSLineJoinStyle join) { style_.join = join; }
    void setLineWidth(float width) { style_.width = width; }
    void setLineDash_count_phase(const float* lengths, int count, float phase);

    /// In the current context, with its colour and transformation.
    void stroke() const;

private:
    using Elements = std::vector<PathElement>;
    void add(NSBezierPathElement kind, NSPoint point);

    /// Shared with what has been drawn: elements are added to it, never changed in it.
    std::shared_ptr<Elements> elements_ = std::make_shared<Elements>();
    NSPoint least_;
    NSPoint greatest_;
    StrokeStyle style_;
};

using NSBezierPathRef = std::shared_ptr<NSBezierPath>;

}  // namespace velmora
