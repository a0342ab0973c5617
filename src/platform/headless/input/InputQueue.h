#pragma once

#include <deque>
#include <functional>
#include <optional>
#include <utility>
#include <vector>

#include "platform/port/Time.h"

namespace velmora {

class VirtualClock;

/// What a simulated user is going to do, in the order of its time. Whoever waits plays it, so that
/// input reaches a loop inside the host just as it reaches the host's own.
class InputQueue {
public:
    using Action = std::function<void()>;

    explicit InputQueue(const VirtualClock& clock) : clock_(clock) {}

    /// Does this after everything that was asked for before.
    void then(Action action);

    /// Lets that much time pass before what is asked for next.
    void pause(Time duration);

    /// Does this at that moment, ahead of what the queue holds for the same moment.
    void insert(Time at, Action action);

    /// Gives one action after the other, and an empty one at its end.
    using Source = std::function<Action()>;
    using Sources = std::vector<Source>;

    /// When the queue is empty, the next action comes from the last source that has one left.
    void addSource(Source source) { sources_.push_back(std::move(source)); }

    /// Puts these in the place of all sources, which it returns.
    Sources exchangeSources(Sources sources) { return std::exchange(sources_, std::move(sources)); }

    /// When the next action is due, asking the sources if need be; nothing when the user is done.
    std::optional<Time> next();

    /// Does the next action. There must be one, and its moment must have come.
    void playNext();

private:
    struct Step {
        Time at;
        Action action;
    };
    const VirtualClock& clock_;
    std::deque<Step> steps_;
    Time end_{};
    Sources sources_;
};

}  // namespace velmora
