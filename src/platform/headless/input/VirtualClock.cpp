#include "platform/headless/input/VirtualClock.h"

#include <algorithm>

namespace velmora {

void VirtualClock::setWakeUp(const void* sleeper, std::optional<Time> at) {
    std::erase_if(wakeUps_, [sleeper](const WakeUp& w) { return w.sleeper == sleeper; });
    if (at) wakeUps_.push_back({sleeper, *at});
}

std::optional<VirtualClock::WakeUp> VirtualClock::earliestWakeUp() const {
    const auto first =
        std::min_element(wakeUps_.begin(), wakeUps_.end(),
                         [](const WakeUp& a, const WakeUp& b) { return a.at < b.at; });
    if (first == wakeUps_.end()) return std::nullopt;
    return *first;
}

}  // namespace velmora
