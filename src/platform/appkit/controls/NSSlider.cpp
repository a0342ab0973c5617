#include "platform/appkit/controls/NSSlider.h"

#include <algorithm>
#include <cmath>

#include "platform/runtime/Class.h"

namespace velmora {

namespace {

[[maybe_unused]] const Class& registered = NSSlider::classObject();

}  // namespace

Class& NSSlider::classObject() {
    static auto* object = &(new Class("NSSlider", &NSControl::classObject()))->makes<NSSlider>();
    return *object;
}

void NSSlider::setMinValue(double value) {
    minValue_ = value;
    setDoubleValue(value_);
}

void NSSlider::setMaxValue(double value) {
    maxValue_ = value;
    setDoubleValue(value_);
}

void NSSlider::setDoubleValue(double value) {
    value_ = std::isnan(value) ? minValue_ : std::max(minValue_, std::min(value, maxValue_));
    setNeedsDisplay();
}

void NSSlider::userMovedTo(double value, bool done) {
    if (!isEnabled()) return;
    setDoubleValue(value);
    if (done || continuous_) sendAction();
}

}  // namespace velmora
