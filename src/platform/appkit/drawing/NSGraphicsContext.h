#pragma once

#include <variant>
#include <vector>

#include "platform/appkit/drawing/NSAffineTransform.h"
#include "platform/appkit/drawing/NSBezierPath.h"
#include "platform/appkit/drawing/NSColor.h"

namespace velmora {

/// Replaces what is in the rectangle by the colour, its transparency included.
struct FillOperation {
    NSRect rect;
    NSColor color;
    NSAffineTransform transform;
};

struct StrokeOperation {
    PathElements path;
    StrokeStyle style;
    NSColor color;
    NSAffineTransform transform;
};

/// What was drawn, in order, for a desktop to play. Its transformations lead to the base
/// coordinates of the window, or of the cell, that was drawn: logical pixels, y growing upward.
using DisplayList = std::vector<std::variant<FillOperation, StrokeOperation>>;

/// Where drawing goes: a display list that grows.
class NSGraphicsContext {
public:
    /// Null while nothing is being drawn; drawing goes nowhere then.
    static NSGraphicsContext* currentContext();

    /// What `draw()` draws.
    template <typename Draw>
    static DisplayList record(const Draw& draw) {
        NSGraphicsContext context;
        const Current current(context);
        draw();
        return std::move(context.list_);
    }

    void setColor(NSColor color) { color_ = color; }
    void setTransform(const NSAffineTransform& transform) { transform_ = transform; }
    void fill(NSRect rect) { list_.emplace_back(FillOperation{rect, color_, transform_}); }
    void stroke(PathElements path, const StrokeStyle& style) {
        list_.emplace_back(StrokeOperation{std::move(path), style, color_, transform_});
    }

private:
    /// Makes a context the current one for as long as it lives.
    class Current {
    public:
        explicit Current(NSGraphicsContext& context);
        ~Current();
        Current(const Current&) = delete;
        Current& operator=(const Current&) = delete;

    private:
        NSGraphicsContext* before_;
    };

    DisplayList list_;
    NSColor color_ = NSColor::blackColor();
    NSAffineTransform transform_;
};

/// With the current context's colour.
void NSRectFill(NSRect rect);

}  // namespace velmora
