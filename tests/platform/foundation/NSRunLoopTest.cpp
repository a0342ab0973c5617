#include "platform/foundation/NSRunLoop.h"

#include <gmock/gmock.h>

#include "platform/appkit/NSApplication.h"
#include "platform/runtime/Class.h"
#include "support/HeadlessHost.h"

namespace velmora {
namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::IsEmpty;

/// Notes when its timers fire, and does what the test wants then.
class Target final : public NSObject {
public:
    static Class& classObject() {
        static auto* object = &(new Class("RunLoopTestTarget", &NSObject::classObject()))
                                   ->method<&Target::fired>("fired:");
        return *object;
    }
    Class& isa() const override { return classObject(); }

    void fired(const NSTimerRef& timer) {
        firings.push_back(timer);
        const auto now = currentDesktop()->now();
        times.push_back(static_cast<int>(std::chrono::duration_cast<milliseconds>(now).count()));
        if (whenFired) whenFired(timer);
    }

    std::vector<NSTimerRef> firings;
    std::vector<int> times;
    std::function<void(const NSTimerRef&)> whenFired;
};

class NSRunLoopTest : public testing::Test {
protected:
    /// A timer keeps its target, and this target its timers.
    void TearDown() override {
        target->firings.clear();
        target->whenFired = nullptr;
    }

    NSTimerRef schedule(int ms, bool repeats = false) {
        return NSTimer::scheduledTimerWithTimeInterval_target_selector_userInfo_repeats(
            ms / 1000.0, target, Selector::named("fired:"), nullptr, repeats);
    }

    HeadlessHost host;
    std::shared_ptr<Target> target = std::make_shared<Target>();
};

TEST_F(NSRunLoopTest, TimersFireInTheOrderOfTheirTimesWhateverOrderTheyWereMadeIn) {
    const NSTimerRef late = schedule(30);
    const NSTimerRef early = schedule(10);
    const NSTimerRef alsoEarly = schedule(10);
    host.advance(100);
    EXPECT_THAT(target->firings, ElementsAre(early, alsoEarly, late));
    EXPECT_THAT(target->times, ElementsAre(10, 10, 30));
    EXPECT_FALSE(late->isValid()) << "a timer that fires once is done";
}

TEST_F(NSRunLoopTest, TimersThatAreDueTogetherFireByTheirTimeNotTheirAge) {
    const NSTimerRef later = schedule(20);
    const NSTimerRef earlier = schedule(10);
    NSRunLoop::currentRunLoop().fireDueTimers(NSDefaultRunLoopMode, milliseconds(50));
    EXPECT_THAT(target->firings, ElementsAre(earlier, later));
}

TEST_F(NSRunLoopTest, ARepeatingTimerKeepsItsBeatAndSkipsWhatItMissed) {
    schedule(10, true);
    host.advance(25);
    EXPECT_THAT(target->times, ElementsAre(10, 20));
    host.session().clock().advanceTo(milliseconds(57));
    host.advance(4);
    EXPECT_THAT(target->times, ElementsAre(10, 20, 57, 60));
}

TEST_F(NSRunLoopTest, ATimerThatAnEarlierOneInvalidatesDoesNotFire) {
    schedule(10);
    const NSTimerRef doomed = schedule(10);
    target->whenFired = [&](const NSTimerRef&) { doomed->invalidate(); };
    host.advance(50);
    EXPECT_THAT(target->times, ElementsAre(10));
}

TEST_F(NSRunLoopTest, ARepeatingTimerCanInvalidateItself) {
    schedule(10, true);
    target->whenFired = [&](const NSTimerRef& timer) {
        if (target->times.size() == 2) timer->invalidate();
    };
    host.advance(50);
    EXPECT_THAT(target->times, ElementsAre(10, 20));
}

TEST_F(NSRunLoopTest, AZeroTimerRunsOnTheNextPassNotInThisOne) {
    bool inside = false;
    NSTimerRef deferred;
    target->whenFired = [&](const NSTimerRef& timer) {
        EXPECT_FALSE(inside);
        inside = true;
        if (timer != deferred) deferred = schedule(0);
        inside = false;
    };
    schedule(10);
    host.advance(20);
    EXPECT_THAT(target->times, ElementsAre(10, 10));
}

TEST_F(NSRunLoopTest, ATimerWaitsUntilTheLoopRunsInItsMode) {
    const NSTimerRef modal = NSTimer::timerWithTimeInterval_target_selector_userInfo_repeats(
        0.01, target, Selector::named("fired:"), nullptr, false);
    NSRunLoop::currentRunLoop().addTimer_forMode(modal, NSModalPanelRunLoopMode);
    host.advance(30);
    EXPECT_THAT(target->firings, IsEmpty());
    NSApp().nextEventMatchingMask_untilDate_inMode_dequeue(NSAnyEventMask, milliseconds(40),
                                                           NSModalPanelRunLoopMode, true);
    EXPECT_THAT(target->times, ElementsAre(30));
}

TEST_F(NSRunLoopTest, ATimerKeepsItsTargetAndUserInfoUntilItIsInvalidated) {
    const Id info = std::make_shared<NSObject>();
    const std::weak_ptr<NSObject> infoAlive = info;
    std::weak_ptr<NSObject> targetAlive;
    NSTimerRef timer;
    {
        const auto other = std::make_shared<Target>();
        targetAlive = other;
        timer = NSTimer::scheduledTimerWithTimeInterval_target_selector_userInfo_repeats(
            1, other, Selector::named("fired:"), info, true);
    }
    EXPECT_FALSE(targetAlive.expired());
    EXPECT_EQ(timer->userInfo(), info);
    timer->invalidate();
    EXPECT_TRUE(targetAlive.expired());
    EXPECT_EQ(info.use_count(), 1);
}

TEST_F(NSRunLoopTest, WhatIsKeptUntilTheNextPassDiesThere) {
    std::weak_ptr<NSObject> alive;
    {
        const auto object = std::make_shared<NSObject>();
        alive = object;
        NSRunLoop::currentRunLoop().keepUntilNextPass(object);
    }
    EXPECT_FALSE(alive.expired());
    // The pass comes without any timer.
    host.advance(1);
    EXPECT_TRUE(alive.expired());
}

TEST_F(NSRunLoopTest, ANestedLoopFiresATimerOnlyOnce) {
    const NSTimerRef outer = schedule(10);
    const NSTimerRef other = schedule(10);
    target->whenFired = [&](const NSTimerRef& timer) {
        if (timer != outer) return;
        NSApp().nextEventMatchingMask_untilDate_inMode_dequeue(NSAnyEventMask, milliseconds(20),
                                                               NSDefaultRunLoopMode, true);
    };
    host.advance(50);
    EXPECT_THAT(target->firings, ElementsAre(outer, other));
}

}  // namespace
}  // namespace velmora
