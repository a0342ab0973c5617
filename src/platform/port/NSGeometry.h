#pragma once

#include <vector>

namespace velmora {

/// Points and rectangles in logical pixels. Screen coordinates have their origin at the lower left
/// of the main screen, y growing upward; a window's base coordinates at the window's lower left.
struct NSPoint {
    float x = 0;
    float y = 0;
    bool operator==(const NSPoint&) const = default;
};

struct NSSize {
    float width = 0;
    float height = 0;
    bool operator==(const NSSize&) const = default;
};

struct NSRect {
    NSPoint origin;
    NSSize size;
    bool operator==(const NSRect&) const = default;
};

inline bool NSEqualPoints(NSPoint a, NSPoint b) {
    return a == b;
}

/// The rectangle without a margin of so much on each side; a negative one makes it larger.
inline NSRect NSInsetRect(NSRect rect, float dX, float dY) {
    return {{rect.origin.x + dX, rect.origin.y + dY},
            {rect.size.width - 2 * dX, rect.size.height - 2 * dY}};
}

/// Whether the point lies in the rectangle. Of the edges, one of each pair belongs to it: left and
/// top where y grows upward (not flipped), left and bottom where y grows downward (flipped).
inline bool NSMouseInRect(NSPoint point, NSRect rect, bool flipped) {
    if (point.x < rect.origin.x || point.x >= rect.origin.x + rect.size.width) return false;
    const float bottom = rect.origin.y;
    const float top = rect.origin.y + rect.size.height;
    return flipped ? point.y >= bottom && point.y < top : point.y > bottom && point.y <= top;
}

}  // namespace velmora
