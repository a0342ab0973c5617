#include "images/VelmoraAnimatedIcon.h"

#include <string>

#include "images/VelmoraImageFactory.h"
#include "platform/appkit/NSWorkspace.h"
#include "platform/runtime/Class.h"
#include "product/ProductAddresses.h"

namespace velmora {

namespace {

constexpr NSTimeInterval frameInterval = 0.1;
constexpr double fullTurn = 60;

[[maybe_unused]] const Class& registered = VelmoraAnimatedIcon::classObject();

}  // namespace

Class& VelmoraAnimatedIcon::classObject() {
    static auto* object = &(new Class("VelmoraAnimatedIcon", &NSButton::classObject()))
                               ->makes<VelmoraAnimatedIcon>()
                               .method<&VelmoraAnimatedIcon::awakeFromNib>("awakeFromNib")
                               .method<&VelmoraAnimatedIcon::animationTick>("animationTick:")
                               .method<&VelmoraAnimatedIcon::gotoHomepage>("gotoHomepage:");
    return *object;
}

// Slow around yellow and just past cyan, fast over the rest. The hue is a sum of steps that are not
// exact, so the bounds decide by what the sum really is.
double VelmoraAnimatedIcon::stepFrom(double hue) {
    constexpr double fast = 1.0;
    constexpr double medium = 0.5;
    constexpr double slow = 0.2;
    if (hue >= 6 && hue <= 14) return hue >= 8 && hue <= 11 ? slow : medium;
    if (hue >= 30 && hue < 38) return hue < 35 ? slow : medium;
    return hue >= 45 && hue < 50 ? medium : fast;
}

void VelmoraAnimatedIcon::awakeFromNib() {
    animationHue_ = 0;
    animationTimer_ = nullptr;
    setImage(VelmoraImageFactory::iconWithHue(0));
    setAction(Selector::named("gotoHomepage:"));
    setTarget(shared_from_this());
}

void VelmoraAnimatedIcon::drawRect(NSRect rect) {
    NSButton::drawRect(rect);
    if (!animationTimer_) startAnimation();
}

void VelmoraAnimatedIcon::removeFromSuperviewWithoutNeedingDisplay() {
    // The timer may be all that keeps the button.
    const Id kept = shared_from_this();
    if (animationTimer_) animationTimer_->invalidate();
    animationTimer_ = nullptr;
    NSButton::removeFromSuperviewWithoutNeedingDisplay();
}

void VelmoraAnimatedIcon::startAnimation() {
    if (animationTimer_) return;
    animationTimer_ = NSTimer::timerWithTimeInterval_target_selector_userInfo_repeats(
        frameInterval, shared_from_this(), Selector::named("animationTick:"), nullptr, true);
    NSRunLoop& loop = NSRunLoop::currentRunLoop();
    loop.addTimer_forMode(animationTimer_, NSDefaultRunLoopMode);
    loop.addTimer_forMode(animationTimer_, NSModalPanelRunLoopMode);
}

void VelmoraAnimatedIcon::animationTick(const NSTimerRef& /*timer*/) {
    animationHue_ += stepFrom(animationHue_);
    if (animationHue_ >= fullTurn) animationHue_ = 0;
    setImage(VelmoraImageFactory::iconWithHue(animationHue_));
}

void VelmoraAnimatedIcon::gotoHomepage(const Id& /*sender*/) {
    NSWorkspace::sharedWorkspace().openURL(productHomePage());
}

}  // namespace velmora
