#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "platform/port/Time.h"
#include "platform/runtime/NSObject.h"

namespace velmora {

/// The modes of the run loop. A timer fires only while the loop runs in one of its modes.
using RunLoopMode = std::string_view;
inline constexpr RunLoopMode NSDefaultRunLoopMode = "NSDefaultRunLoopMode";
inline constexpr RunLoopMode NSModalPanelRunLoopMode = "NSModalPanelRunLoopMode";

/// Sends a message to its target after an interval, once or again and again. The timer keeps its
/// target and its user info until it is invalidated; the run loop keeps the timer.
class NSTimer final : public NSObject {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    /// A timer that is scheduled on the current run loop in its default mode. The selector's method
    /// takes the timer: `void(const std::shared_ptr<NSTimer>&)`.
    static std::shared_ptr<NSTimer> scheduledTimerWithTimeInterval_target_selector_userInfo_repeats(
        NSTimeInterval interval, Id target, Selector selector, Id userInfo, bool repeats);

    /// As above, but not scheduled yet: NSRunLoop::addTimer_forMode does that.
    static std::shared_ptr<NSTimer> timerWithTimeInterval_target_selector_userInfo_repeats(
        NSTimeInterval interval, Id target, Selector selector, Id userInfo, bool repeats);

    /// Takes the timer off its run loop for good and lets go of target and user info.
    void invalidate();
    bool isValid() const { return valid_; }
    const Id& userInfo() const { return userInfo_; }
    Time fireDate() const { return fireDate_; }

private:
    friend class NSRunLoop;
    void fire(Time now);
    void letGo();

    Time interval_{};
    Time fireDate_{};
    Id target_;
    Selector selector_;
    Id userInfo_;
    bool repeats_ = false;
    bool valid_ = true;
    /// Its message is being sent: a loop that runs inside does not send it again.
    bool firing_ = false;
};

using NSTimerRef = std::shared_ptr<NSTimer>;

/// The timers of the process's one thread. The desktop or NSApplication's event fetch runs it.
class NSRunLoop {
public:
    NSRunLoop() = default;
    /// Its timers let go of their targets, which may keep them.
    ~NSRunLoop();
    NSRunLoop(NSRunLoop&&) = default;
    NSRunLoop& operator=(NSRunLoop&&) = default;
    NSRunLoop(const NSRunLoop&) = delete;
    NSRunLoop& operator=(const NSRunLoop&) = delete;

    static NSRunLoop& currentRunLoop();

    void addTimer_forMode(const NSTimerRef& timer, RunLoopMode mode);

    /// Does this at the beginning of the loop's next pass, in whatever mode it runs.
    void performAtNextPass(std::function<void()> action);

    /// Keeps the object alive until the loop's next pass: a deferred release.
    void keepUntilNextPass(Id object);

    /// When the earliest timer of the mode wants to fire; nothing without one. At once while
    /// something waits for the next pass.
    std::optional<Time> nextFireDate(RunLoopMode mode) const;

    /// Fires the timers of the mode that are due at `now`, in the order of their fire dates, each
    /// once; a repeating timer that was late skips the firings it missed.
    void fireDueTimers(RunLoopMode mode, Time now);

    /// The mode in which the host's own loop runs us: the default one unless one of our own modal
    /// sessions runs.
    RunLoopMode mode() const { return mode_; }
    void setMode(RunLoopMode mode);

private:
    friend class NSTimer;
    struct Entry {
        NSTimerRef timer;
        RunLoopMode mode;
    };
    void timersChanged();

    std::vector<Entry> entries_;
    std::vector<std::function<void()>> nextPass_;
    RunLoopMode mode_ = NSDefaultRunLoopMode;
};

}  // namespace velmora
