#include "platform/appkit/drawing/NSBezierPath.h"

#include <algorithm>

#include "platform/appkit/drawing/NSGraphicsContext.h"

namespace velmora {

void NSBezierPath::add(NSBezierPathElement kind, NSPoint point) {
    if (elements_->empty()) least_ = greatest_ = point;
    least_ = {std::min(least_.x, point.x), std::min(least_.y, point.y)};
    greatest_ = {std::max(greatest_.x, point.x), std::max(greatest_.y, point.y)};
    elements_->push_back({kind, point});
}

void NSBezierPath::removeAllPoints() {
    if (elements_.use_count() == 1) {
        elements_->clear();
    } else {
        elements_ = std::make_shared<Elements>();
    }
}

void NSBezierPath::transformUsingAffineTransform(const NSAffineTransform& transform) {
    const PathElements before = elements();
    removeAllPoints();
    for (const PathElement& element : before) {
        add(element.kind, transform.transformPoint(element.point));
    }
}

NSBezierPathElement NSBezierPath::elementAtIndex_associatedPoints(int index,
                                                                  NSPoint* points) const {
    const PathElement& element = (*elements_)[static_cast<std::size_t>(index)];
    *points = element.point;
    return element.kind;
}

NSRect NSBezierPath::bounds() const {
    if (elements_->empty()) return {};
    return {least_, {greatest_.x - least_.x, greatest_.y - least_.y}};
}

void NSBezierPath::setLineDash_count_phase(const float* lengths, int count, float phase) {
    style_.dash.assign(lengths, lengths + count);
    style_.dashPhase = phase;
}

void NSBezierPath::stroke() const {
    if (NSGraphicsContext* context = NSGraphicsContext::currentContext()) {
        context->stroke(elements(), style_);
    }
}

}  // namespace velmora
