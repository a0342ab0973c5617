#include "gestures/VelmoraGestureFeedbackView.h"

#include <array>
#include <cstdint>

#include "images/VelmoraImageFactory.h"
#include "platform/runtime/Class.h"

namespace velmora {

namespace {

using ColorTuple = std::array<std::uint8_t, 3>;

constexpr ColorTuple baseColor{251, 106, 106};
constexpr std::array dashes{3.0F, 3.0F};
constexpr float margin = 3;
constexpr float outerWidth = 4;
constexpr float innerWidth = 2;
constexpr NSRect boundsWithoutPath{{-10, -10}, {1, 1}};

ProcessWide<ColorTuple> colorTuple(baseColor);

/// Known by its name before anything of this file is called: the preferences set the hue by it.
[[maybe_unused]] const Class& registered = VelmoraGestureFeedbackView::classObject();

}  // namespace

Class& VelmoraGestureFeedbackView::classObject() {
    static auto* object = new Class("VelmoraGestureFeedbackView", &NSDrawnView::classObject());
    return *object;
}

void VelmoraGestureFeedbackView::setHue(double hue) {
    ColorTuple color = baseColor;
    VelmoraImageFactory::changeHueTo_atPointer(hue, color.data());
    colorTuple = color;
}

void VelmoraGestureFeedbackView::startAtPoint(NSPoint point) {
    if (path_) {
        path_->removeAllPoints();
    } else {
        path_ = NSBezierPath::bezierPath();
        path_->setLineCapStyle(NSRoundLineCapStyle);
        path_->setLineJoinStyle(NSRoundLineJoinStyle);
        path_->setLineDash_count_phase(dashes.data(), static_cast<int>(dashes.size()), 0);
    }
    path_->moveToPoint(point);
}

void VelmoraGestureFeedbackView::addPoint(NSPoint point) {
    if (path_) path_->lineToPoint(point);
}

void VelmoraGestureFeedbackView::reset() {
    if (path_) path_->removeAllPoints();
}

NSRect VelmoraGestureFeedbackView::drawBounds() {
    if (!path_) return boundsWithoutPath;
    const NSRect bounds = NSInsetRect(path_->bounds(), -margin, -margin);
    orig_ = bounds.origin;
    return bounds;
}

void VelmoraGestureFeedbackView::drawRect(NSRect /*rect*/) {
    NSColor::clearColor().set();
    NSRectFill(frame());
    if (!path_) return;
    NSAffineTransform toWindow;
    toWindow.translateXBy_yBy(-orig_.x, -orig_.y);
    toWindow.set();
    const auto [red, green, blue] = *colorTuple;
    constexpr float full = 255;
    NSColor::colorWithCalibratedRed_green_blue_alpha(static_cast<float>(red) / full,
                                                     static_cast<float>(green) / full,
                                                     static_cast<float>(blue) / full, 1)
        .set();
    path_->setLineWidth(outerWidth);
    path_->stroke();
    NSColor::whiteColor().set();
    path_->setLineWidth(innerWidth);
    path_->stroke();
}

}  // namespace velmora
