#include "platform/headless/input/InputQueue.h"

#include <algorithm>
#include <utility>

#include "platform/headless/input/VirtualClock.h"

namespace velmora {

void InputQueue::then(Action action) {
    end_ = std::max(end_, clock_.now());
    steps_.push_back({end_, std::move(action)});
}

void InputQueue::pause(Time duration) {
    end_ = std::max(end_, clock_.now()) + duration;
}

void InputQueue::insert(Time at, Action action) {
    const auto place = std::find_if(steps_.begin(), steps_.end(),
                                    [at](const Step& step) { return step.at >= at; });
    steps_.insert(place, {at, std::move(action)});
}

std::optional<Time> InputQueue::next() {
    while (steps_.empty() && !sources_.empty()) {
        if (Action action = sources_.back()()) {
            then(std::move(action));
        } else {
            sources_.pop_back();
        }
    }
    if (steps_.empty()) return std::nullopt;
    return steps_.front().at;
}

void InputQueue::playNext() {
    // The action may queue more, and may wait itself.
    const Step step = std::move(steps_.front());
    steps_.pop_front();
    step.action();
}

}  // namespace velmora
