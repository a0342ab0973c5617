#include "gestures/VelmoraMouseHandling.h"

#include "gestures/VelmoraEventAdditions.h"
#include "gestures/VelmoraGestures.h"
#include "images/VelmoraImageFactory.h"
#include "platform/appkit/NSApplication.h"
#include "platform/appkit/NSView.h"
#include "platform/appkit/NSWorkspace.h"
#include "platform/foundation/NSNotificationCenter.h"
#include "platform/port/CGDirectDisplay.h"
#include "platform/port/Desktop.h"
#include "platform/runtime/Class.h"
#include "preferences/VelmoraActivation.h"
#include "product/Limits.h"

namespace velmora {

ProcessWide<std::shared_ptr<VelmoraMouseHandling>> VelmoraMouseHandler;
ProcessWide<NSPoint> VelmoraGestureStartPoint;

namespace {

const Category category(NSApplication::classObject(),
                        {methodFor<&velmoraGestureStartPoint>("velmoraGestureStartPoint")});

constexpr NSTimeInterval samplingInterval = 0.01;
constexpr int millisecondsPerTick = 10;

char letterFor(std::int64_t dx, std::int64_t dy) {
    if (std::abs(dx) < std::abs(dy)) return dy >= 0 ? 'u' : 'd';
    return dx >= 0 ? 'r' : 'l';
}

}  // namespace

Class& VelmoraMouseHandling::classObject() {
    static auto* object =
        &(new Class("VelmoraMouseHandling", &NSObject::classObject()))
             ->method<&VelmoraMouseHandling::activate>("activate")
             .method<&VelmoraMouseHandling::doGesture_triggerEvent>("doGesture:triggerEvent:")
             .method<&VelmoraMouseHandling::doScrollWheelVertical_triggerEvent>(
                 "doScrollWheelVertical:triggerEvent:")
             .method<&VelmoraMouseHandling::doScrollWheelHorizontal_triggerEvent>(
                 "doScrollWheelHorizontal:triggerEvent:")
             .method<&VelmoraMouseHandling::doScrollWheelBoth_triggerEvent>(
                 "doScrollWheelBoth:triggerEvent:")
             .method<&VelmoraMouseHandling::doJogDial_triggerEvent>("doJogDial:triggerEvent:")
             .method<&VelmoraMouseHandling::applicationWillResignActive>(
                 "applicationWillResignActive:")
             .method<&VelmoraMouseHandling::gestureTimerFired>("gestureTimerFired:");
    return *object;
}

/// While a capture or a tracking runs. However it is left, by an exception of the host's code too,
/// nothing stays pinned, pushed or drawn.
class VelmoraMouseHandling::Loop {
public:
    explicit Loop(VelmoraMouseHandling& handling) : handling_(handling) { handling_.busy_ = true; }

    ~Loop() {
        try {
            if (handling_.gestureLoopActive_) handling_.abortGesture();
            if (handling_.trackingLoopActive_) handling_.endTracking();
            if (told_) told_->setAcceptsMouseMovedEvents(false);
        } catch (...) {
            // The one that is under way tells what has happened.
        }
        handling_.busy_ = false;
    }

    Loop(const Loop&) = delete;
    Loop& operator=(const Loop&) = delete;

    /// Until the end of the loop, the window is told of the mouse's motion.
    void tellOfMotion(const NSWindowRef& window) {
        if (!window || window->acceptsMouseMovedEvents()) return;
        window->setAcceptsMouseMovedEvents(true);
        told_ = window;
    }

private:
    VelmoraMouseHandling& handling_;
    NSWindowRef told_;
};

void VelmoraMouseHandling::activate() {
    VelmoraMouseHandler = std::static_pointer_cast<VelmoraMouseHandling>(shared_from_this());
    hooks_.place();
    NSNotificationCenter::defaultCenter().addObserver_selector_name_object(
        shared_from_this(), Selector::named("applicationWillResignActive:"),
        NSApplicationWillResignActiveNotification, nullptr);
}

NSEventRef VelmoraMouseHandling::doGesture_triggerEvent(const NSEventRef& event,
                                                        const NSEventRef& trigger) {
    if (busy_) return trigger;
    const auto entry = static_cast<std::size_t>(*VelmoraIndex);
    const bool modifiersOnly =
        entry < VelmoraMouseButton->size() && VelmoraMouseButton[entry] == -1;
    const NSEventRef started = event;
    velmoraGesturesCursor_ = VelmoraImageFactory::cursor();
    NSEventRef next;
    {
        const Loop loop(*this);
        startGesture();
        while (gestureLoopActive_) {
            next = NSApp().nextEventMatchingMask_untilDate_inMode_dequeue(
                NSAnyEventMask, desktop().now() + timeFromInterval(samplingInterval),
                NSDefaultRunLoopMode, true);
            // When a sample has ended the capture within this wait, the event is no part of it: it
            // only goes to the host, as the result.
            if (!next || !gestureLoopActive_) continue;
            if (modifiersOnly) {
                handleWithModifiersOnly(next, started);
            } else {
                handleWithButton(next);
            }
        }
    }
    if (!hadGesture_) hooks_.passEventOn(started);
    return next;
}

void VelmoraMouseHandling::handleWithButton(const NSEventRef& next) {
    switch (next->type()) {
        case NSLeftMouseDown:
        case NSRightMouseDown:
        case NSOtherMouseDown:
        case NSKeyDown:
        case NSKeyUp: abortGesture(); break;
        case NSLeftMouseUp:
        case NSRightMouseUp:
        case NSOtherMouseUp: endGesture(); break;
        case NSLeftMouseDragged:
        case NSRightMouseDragged:
        case NSOtherMouseDragged: break;
        default: hooks_.passEventOn(next);
    }
}

void VelmoraMouseHandling::handleWithModifiersOnly(const NSEventRef& next,
                                                   const NSEventRef& started) {
    switch (next->type()) {
        case NSLeftMouseDown:
        case NSLeftMouseUp:
        case NSRightMouseDown:
        case NSRightMouseUp:
        case NSLeftMouseDragged:
        case NSRightMouseDragged:
        case NSKeyDown:
        case NSKeyUp:
        case NSOtherMouseDown:
        case NSOtherMouseUp:
        case NSOtherMouseDragged: abortGesture(); break;
        case NSFlagsChanged:
            if ((next->modifierFlags() & VelmoraModifierMask) <
                (started->modifierFlags() & VelmoraModifierMask)) {
                endGesture();
            } else {
                abortGesture();
            }
            break;
        default: hooks_.passEventOn(next);
    }
}

void VelmoraMouseHandling::startGesture() {
    const NSPoint location = NSEvent::mouseLocation();
    VelmoraGestureStartPoint = location;
    drawsTrace_ = *VelmoraGesturesDrawFeedback;
    if (drawsTrace_) {
        if (!feedbackWindow_) feedbackWindow_ = std::make_shared<VelmoraGestureFeedbackWindow>();
        feedbackWindow_->startAtPoint(location);
    }
    if (velmoraGesturesCursor_) velmoraGesturesCursor_->push();
    gestureLoopActive_ = true;
    gestureTimer_ = NSTimer::scheduledTimerWithTimeInterval_target_selector_userInfo_repeats(
        samplingInterval, shared_from_this(), Selector::named("gestureTimerFired:"), nullptr, true);
    lastMX_ = static_cast<std::int32_t>(location.x);
    lastMY_ = static_cast<std::int32_t>(location.y);
    gestureTicks_ = 0;
    gestureIdx_ = 0;
    gestureString_[0] = 0;
    gestureString_[1] = 0;
    hadGesture_ = false;
}

void VelmoraMouseHandling::gestureTimerFired(const NSTimerRef& /*timer*/) {
    ++gestureTicks_;
    if (std::int64_t{gestureTicks_} * millisecondsPerTick > *VelmoraGestureTimeout) {
        abortGesture();
    } else {
        addToGesture();
    }
}

void VelmoraMouseHandling::addToGesture() {
    const NSPoint location = NSEvent::mouseLocation();
    const auto x = static_cast<std::int32_t>(location.x);
    const auto y = static_cast<std::int32_t>(location.y);
    if (drawsTrace_) feedbackWindow_->addPoint(location);
    const std::int64_t dx = std::int64_t{x} - lastMX_;
    const std::int64_t dy = std::int64_t{y} - lastMY_;
    if (dx * dx + dy * dy <= *VelmoraGestureSize) return;
    gestureTicks_ = 0;
    if (gestureIdx_ >= longestGesture) {
        NSBeep();
        abortGesture();
        return;
    }
    const char letter = letterFor(dx, dy);
    const auto last = static_cast<std::size_t>(gestureIdx_);
    if (gestureString_[last] != letter) {
        gestureString_[last + 1] = letter;
        gestureString_[last + 2] = 0;
        ++gestureIdx_;
    }
    lastMX_ = x;
    lastMY_ = y;
}

void VelmoraMouseHandling::endGesture() {
    leaveLoop();
    if (gestureIdx_ != 0) hadGesture_ = true;
    const std::shared_ptr<VelmoraGestures> gestures = VelmoraGestures::activeInstance();
    if (hadGesture_ && gestures) {
        gestures->processGesture_makeKey(std::string(&gestureString_[1]), *VelmoraGestureMakesKey);
    }
}

void VelmoraMouseHandling::abortGesture() {
    leaveLoop();
}

void VelmoraMouseHandling::leaveLoop() {
    gestureLoopActive_ = false;
    if (gestureTimer_) gestureTimer_->invalidate();
    gestureTimer_ = nullptr;
    if (velmoraGesturesCursor_) NSCursor::pop();
    velmoraGesturesCursor_ = nullptr;
    if (drawsTrace_) feedbackWindow_->goAway(shared_from_this());
}

NSEventRef VelmoraMouseHandling::doScrollWheelVertical_triggerEvent(const NSEventRef& event,
                                                                    const NSEventRef& trigger) {
    return track(VelmoraScrollMotion::vertical, &VelmoraImageFactory::cursorV, event, trigger);
}

NSEventRef VelmoraMouseHandling::doScrollWheelHorizontal_triggerEvent(const NSEventRef& event,
                                                                      const NSEventRef& trigger) {
    return track(VelmoraScrollMotion::horizontal, &VelmoraImageFactory::cursorH, event, trigger);
}

NSEventRef VelmoraMouseHandling::doScrollWheelBoth_triggerEvent(const NSEventRef& event,
                                                                const NSEventRef& trigger) {
    return track(VelmoraScrollMotion::both, &VelmoraImageFactory::cursorHV, event, trigger);
}

NSEventRef VelmoraMouseHandling::doJogDial_triggerEvent(const NSEventRef& event,
                                                        const NSEventRef& trigger) {
    return track(VelmoraScrollMotion::jogDial, &VelmoraImageFactory::cursorJog, event, trigger);
}

NSEventRef VelmoraMouseHandling::track(VelmoraScrollMotion::TrackMode mode, NSCursorRef (*cursor)(),
                                       const NSEventRef& event, const NSEventRef& trigger) {
    if (busy_) return trigger;
    scrollMotion_ = VelmoraScrollMotion(mode);
    velmoraGesturesCursor_ = cursor();
    return startTracking_triggerEvent(event, trigger);
}

void VelmoraMouseHandling::chooseResponder(const NSWindowRef& window) {
    scrollWindow_ = window;
    VelmoraTargetWindowNum = 0;
    if (!window) return;
    const NSViewRef content = window->contentView();
    NSViewRef view =
        content ? content->hitTest(window->convertScreenToBase(NSEvent::mouseLocation())) : nullptr;
    while (view && !view->acceptsFirstResponder()) view = view->superview();
    if (view) window->makeFirstResponder(view);
    VelmoraTargetWindowNum = window->windowNumber();
}

NSEventRef VelmoraMouseHandling::startTracking_triggerEvent(const NSEventRef& /*event*/,
                                                            const NSEventRef& /*trigger*/) {
    Loop loop(*this);
    NSWindowRef window = NSApp().keyWindow();
    if (!window) window = NSApp().mainWindow();
    loop.tellOfMotion(window);
    chooseResponder(window);
    startTracking();
    NSEventRef next;
    while (trackingLoopActive_) {
        next = NSApp().nextEventMatchingMask_untilDate_inMode_dequeue(
            NSAnyEventMask, desktop().now() + timeFromInterval(samplingInterval),
            NSDefaultRunLoopMode, true);
        // When the tracking was ended within this wait, the event is no part of it.
        if (next && trackingLoopActive_) handleTracking(next);
    }
    return next;
}

void VelmoraMouseHandling::handleTracking(const NSEventRef& next) {
    switch (next->type()) {
        case NSLeftMouseDown:
        case NSLeftMouseUp:
        case NSRightMouseDown:
        case NSRightMouseUp:
        case NSKeyDown:
        case NSKeyUp:
        case NSOtherMouseDown:
        case NSOtherMouseUp: endTracking(); break;
        case NSMouseMoved:
        case NSLeftMouseDragged:
        case NSRightMouseDragged:
        case NSOtherMouseDragged: addToTracking(); break;
        default: hooks_.passEventOn(next);
    }
}

void VelmoraMouseHandling::startTracking() {
    if (velmoraGesturesCursor_) velmoraGesturesCursor_->push();
    CGAssociateMouseAndMouseCursorPosition(false);
    trackingLoopActive_ = true;
}

void VelmoraMouseHandling::addToTracking() {
    const CGMouseDelta delta = CGGetLastMouseDelta();
    if (const auto step = scrollMotion_.add(delta.x, delta.y)) {
        deliver(velmoraScrollWheelEventWithDeltaX_deltaY(step->deltaX, step->deltaY));
    }
}

void VelmoraMouseHandling::deliver(const NSEventRef& scroll) const {
    static const Selector velmoraScroll = Selector::named("velmoraScroll:");
    const NSWindowRef window = scrollWindow_.lock();
    NSResponderRef responder = window ? window->firstResponder() : nullptr;
    while (responder && !responder->tryToPerform_with(velmoraScroll, scroll)) {
        responder = responder->nextResponder();
    }
    if (!responder) hooks_.passEventOn(scroll);
}

void VelmoraMouseHandling::endTracking() {
    trackingLoopActive_ = false;
    CGAssociateMouseAndMouseCursorPosition(true);
    if (velmoraGesturesCursor_) NSCursor::pop();
    velmoraGesturesCursor_ = nullptr;
}

void VelmoraMouseHandling::applicationWillResignActive(const NSNotification& /*notification*/) {
    if (trackingLoopActive_) endTracking();
}

NSPoint velmoraGestureStartPoint(NSApplication& /*application*/) {
    return *VelmoraGestureStartPoint;
}

}  // namespace velmora
