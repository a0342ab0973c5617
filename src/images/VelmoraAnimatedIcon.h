#pragma once

#include "platform/appkit/controls/NSButton.h"
#include "platform/foundation/NSRunLoop.h"

namespace velmora {

/// A push button that shows the icon with its hue running round the colour circle, ten frames a
/// second, and opens the product's home page. Interface files place it in a panel.
///
/// It runs from the first time that it is drawn until it is taken out of its panel, also while the
/// panel is hidden. The running timer keeps the button alive.
class VelmoraAnimatedIcon final : public NSButton {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    /// The interface file is loaded.
    void awakeFromNib();

    void drawRect(NSRect rect) override;
    void removeFromSuperviewWithoutNeedingDisplay() override;

    /// How far the hue moves in a frame that begins with this one.
    static double stepFrom(double hue);

    /// Does nothing while it runs.
    void startAnimation();
    void animationTick(const NSTimerRef& timer);
    /// The action.
    void gotoHomepage(const Id& sender);

    /// From 0 up to, not including, 60, as in VelmoraImageFactory.
    double animationHue() const { return animationHue_; }
    /// Null while it does not run.
    const NSTimerRef& animationTimer() const { return animationTimer_; }

private:
    NSTimerRef animationTimer_;
    double animationHue_ = 0;
};

}  // namespace velmora
