#pragma once

#include <memory>

#include "platform/appkit/drawing/NSGraphicsContext.h"
#include "platform/port/Bitmap.h"

// NOLINTNEXTLINE(bugprone-reserved-identifier): the library's own name.
using cairo_t = struct _cairo;

namespace velmora {

/// A picture that is being drawn, by cairo. Coordinates are in points, y growing upward from the
/// picture's lower left corner.
class Canvas {
public:
    /// Transparent, with that many pixels a point.
    explicit Canvas(NSSize size, double pixels = 1);

    /// Draws over what is there.
    void fill(NSRect rect, NSColor color);
    /// A picture of a pixel a point, its upper left corner there.
    void draw(const Bitmap& picture, NSPoint upperLeft);
    /// What was drawn into a place of its own: the list's base coordinates begin at the lower left
    /// corner of the frame, and nothing reaches beyond it. It is laid over what is there with that
    /// opacity.
    void play(const DisplayList& list, NSRect frame, double opacity = 1);

    Bitmap bitmap() const;

private:
    struct Delete {
        void operator()(cairo_t* context) const;
    };
    std::unique_ptr<cairo_t, Delete> context_;
};

}  // namespace velmora
