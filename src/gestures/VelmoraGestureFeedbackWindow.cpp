#include "gestures/VelmoraGestureFeedbackWindow.h"

#include "platform/runtime/Class.h"

namespace velmora {

namespace {

constexpr double fadeStep = 0.1;
constexpr NSTimeInterval fadeInterval = 0.01;
constexpr NSRect parkingFrame{{-20, -20}, {1, 1}};

}  // namespace

Class& VelmoraGestureFeedbackWindow::classObject() {
    static auto* object =
        &(new Class("VelmoraGestureFeedbackWindow", &NSDrawnWindow::classObject()))
             ->makes<VelmoraGestureFeedbackWindow>()
             .method<&VelmoraGestureFeedbackWindow::goAway>("goAway:")
             .method<&VelmoraGestureFeedbackWindow::dimWindow>("dimWindow:");
    return *object;
}

VelmoraGestureFeedbackWindow::VelmoraGestureFeedbackWindow()
    : view_(std::make_shared<VelmoraGestureFeedbackView>()) {
    setLevel(CGWindowLevelForKey(kCGStatusWindowLevelKey));
    setContentView(view_);
}

void VelmoraGestureFeedbackWindow::startAtPoint(NSPoint point) {
    stopFading();
    myAlpha_ = 1;
    setAlphaValue(1);
    view_->startAtPoint(point);
    resizeToPath();
    orderFront();
    lastPoint_ = point;
}

void VelmoraGestureFeedbackWindow::addPoint(NSPoint point) {
    if (NSEqualPoints(point, lastPoint_)) return;
    lastPoint_ = point;
    setAlphaValue(1);
    view_->addPoint(point);
    resizeToPath();
    view_->display();
}

void VelmoraGestureFeedbackWindow::resizeToPath() {
    setFrame_display(view_->drawBounds(), true);
}

void VelmoraGestureFeedbackWindow::goAway(const Id& /*sender*/) {
    stopFading();
    myAlpha_ = 1;
    timerA_ = addFadeTimer(NSDefaultRunLoopMode);
    timerB_ = addFadeTimer(NSModalPanelRunLoopMode);
}

NSTimerRef VelmoraGestureFeedbackWindow::addFadeTimer(RunLoopMode mode) {
    NSTimerRef timer = NSTimer::timerWithTimeInterval_target_selector_userInfo_repeats(
        fadeInterval, shared_from_this(), Selector::named("dimWindow:"), nullptr, true);
    NSRunLoop::currentRunLoop().addTimer_forMode(timer, mode);
    return timer;
}

void VelmoraGestureFeedbackWindow::dimWindow(const NSTimerRef& /*timer*/) {
    myAlpha_ = static_cast<float>(static_cast<double>(myAlpha_) - fadeStep);
    if (0.0F < myAlpha_) {
        setAlphaValue(myAlpha_);
        return;
    }
    orderOut();
    stopFading();
    view_->reset();
    setFrame_display(parkingFrame, false);
}

void VelmoraGestureFeedbackWindow::stopFading() {
    for (NSTimerRef* timer : {&timerA_, &timerB_}) {
        if (*timer) (*timer)->invalidate();
        *timer = nullptr;
    }
}

}  // namespace velmora
