#pragma once

#include "platform/port/NSGeometry.h"

namespace velmora {

/// Maps (x, y) to (m11 x + m21 y + tX, m12 x + m22 y + tY). A step that is added comes before the
/// steps that are there already.
struct NSAffineTransform {
    float m11 = 1;
    float m12 = 0;
    float m21 = 0;
    float m22 = 1;
    float tX = 0;
    float tY = 0;

    void translateXBy_yBy(float x, float y);
    void scaleBy(float factor) { scaleXBy_yBy(factor, factor); }
    void scaleXBy_yBy(float x, float y);

    NSPoint transformPoint(NSPoint point) const {
        return {m11 * point.x + m21 * point.y + tX, m12 * point.x + m22 * point.y + tY};
    }

    /// Replaces the current context's transformation.
    void set() const;

    bool operator==(const NSAffineTransform&) const = default;
};

}  // namespace velmora
