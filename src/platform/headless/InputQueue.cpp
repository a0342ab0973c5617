#include "platform/headless/InputQueue.h"

#include <algorithm>
#include <utility>

#include "platform/headless/VirtualClock.h"

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

InputQueue::Source InputQueue::setSource(Source source) {
    return std::exchange(source_, std::move(source));
}

std::optional<Time> InputQueue::next() {
    if (steps_.empty() && source_) {
        if (Action action = source_()) then(std::move(action));
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
