#pragma once

#include <memory>

#include "platform/appkit/controls/NSControl.h"

namespace velmora {

/// A slider. Its value lies from its least to its greatest, in no particular unit.
class NSSlider final : public NSControl {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    double minValue() const { return minValue_; }
    void setMinValue(double value);
    double maxValue() const { return maxValue_; }
    void setMaxValue(double value);

    double doubleValue() const override { return value_; }
    /// What lies outside, or is no number, becomes the nearest that is inside.
    void setDoubleValue(double value) override;
    /// Truncated.
    int intValue() const override { return static_cast<int>(value_); }
    void setIntValue(int value) override { setDoubleValue(value); }

    /// Whether the action goes out while the user moves it, not only at the end.
    bool isContinuous() const { return continuous_; }
    void setContinuous(bool continuous) { continuous_ = continuous; }

    // For desktops

    /// The user has moved it there, and is done with it or still holds it.
    void userMovedTo(double value, bool done);

private:
    double minValue_ = 0;
    double maxValue_ = 1;
    double value_ = 0;
    bool continuous_ = true;
};

using NSSliderRef = std::shared_ptr<NSSlider>;

}  // namespace velmora
