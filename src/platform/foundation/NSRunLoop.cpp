#include "platform/foundation/NSRunLoop.h"

#include <algorithm>
#include <utility>

#include "platform/port/Desktop.h"
#include "platform/runtime/Class.h"

namespace velmora {

namespace {

ProcessWide<NSRunLoop> runLoop;

}  // namespace

Class& NSTimer::classObject() {
    static auto* object = new Class("NSTimer", &NSObject::classObject());
    return *object;
}

NSTimerRef NSTimer::timerWithTimeInterval_target_selector_userInfo_repeats(
    NSTimeInterval interval, Id target, Selector selector, Id userInfo, bool repeats) {
    auto timer = std::make_shared<NSTimer>();
    timer->interval_ = timeFromInterval(interval);
    timer->fireDate_ = desktop().now() + timer->interval_;
    timer->target_ = std::move(target);
    timer->selector_ = selector;
    timer->userInfo_ = std::move(userInfo);
    timer->repeats_ = repeats;
    return timer;
}

NSTimerRef NSTimer::scheduledTimerWithTimeInterval_target_selector_userInfo_repeats(
    NSTimeInterval interval, Id target, Selector selector, Id userInfo, bool repeats) {
    NSTimerRef timer = timerWithTimeInterval_target_selector_userInfo_repeats(
        interval, std::move(target), selector, std::move(userInfo), repeats);
    NSRunLoop::currentRunLoop().addTimer_forMode(timer, NSDefaultRunLoopMode);
    return timer;
}

void NSTimer::letGo() {
    valid_ = false;
    target_.reset();
    userInfo_.reset();
}

void NSTimer::invalidate() {
    letGo();
    NSRunLoop& loop = NSRunLoop::currentRunLoop();
    if (std::erase_if(loop.entries_, [this](const NSRunLoop::Entry& entry) {
            return entry.timer.get() == this;
        }) > 0) {
        loop.timersChanged();
    }
}

void NSTimer::fire(Time now) {
    const Id target = target_;
    const NSTimerRef self = std::static_pointer_cast<NSTimer>(shared_from_this());
    if (repeats_) {
        const Time step = std::max(interval_, Time(100'000));
        fireDate_ += step;
        if (fireDate_ <= now) fireDate_ += (now - fireDate_) / step * step + step;
    }
    // However the message ends, by an exception too.
    const std::unique_ptr<NSTimer, void (*)(NSTimer*)> fired(this, [](NSTimer* timer) {
        timer->firing_ = false;
        if (!timer->repeats_) timer->invalidate();
    });
    firing_ = true;
    // The message may run a loop of the host's, in which the other timers go on.
    NSRunLoop::currentRunLoop().timersChanged();
    if (target) message<void(const NSTimerRef&)>(*target, selector_, self);
}

NSRunLoop::~NSRunLoop() {
    for (const Entry& entry : entries_) entry.timer->letGo();
}

NSRunLoop& NSRunLoop::currentRunLoop() {
    return runLoop;
}

void NSRunLoop::addTimer_forMode(const NSTimerRef& timer, RunLoopMode mode) {
    entries_.push_back({timer, mode});
    timersChanged();
}

void NSRunLoop::performAtNextPass(std::function<void()> action) {
    nextPass_.push_back(std::move(action));
    timersChanged();
}

void NSRunLoop::keepUntilNextPass(Id object) {
    performAtNextPass([kept = std::move(object)] {});
}

std::optional<Time> NSRunLoop::nextFireDate(RunLoopMode mode) const {
    if (!nextPass_.empty()) return distantPast;
    std::optional<Time> next;
    for (const Entry& entry : entries_) {
        if (entry.mode != mode || entry.timer->firing_) continue;
        if (!next || entry.timer->fireDate() < *next) next = entry.timer->fireDate();
    }
    return next;
}

void NSRunLoop::fireDueTimers(RunLoopMode mode, Time now) {
    // What the actions keep is released behind the timers.
    const std::vector<std::function<void()>> actions = std::exchange(nextPass_, {});
    for (const auto& action : actions) action();
    if (entries_.empty()) return;
    std::vector<NSTimerRef> due;
    for (const Entry& entry : entries_) {
        if (entry.mode == mode && entry.timer->fireDate() <= now) due.push_back(entry.timer);
    }
    if (due.empty()) return;
    std::stable_sort(due.begin(), due.end(), [](const NSTimerRef& a, const NSTimerRef& b) {
        return a->fireDate() < b->fireDate();
    });
    for (const NSTimerRef& timer : due) {
        // An earlier one may have invalidated it, or a nested loop may have fired it.
        if (timer->isValid() && !timer->firing_ && timer->fireDate() <= now) timer->fire(now);
    }
    timersChanged();
}

void NSRunLoop::setMode(RunLoopMode mode) {
    mode_ = mode;
    timersChanged();
}

void NSRunLoop::timersChanged() {
    desktop().timersChanged(nextFireDate(mode_));
}

}  // namespace velmora
