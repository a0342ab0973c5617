#pragma once

#include <optional>
#include <vector>

#include "platform/port/Time.h"

namespace velmora {

/// The time of the headless desktop. It stands still until somebody waits.
class VirtualClock {
public:
    Time now() const { return now_; }

    /// Moves on to the moment; a moment that is over changes nothing.
    void advanceTo(Time moment) { now_ = moment > now_ ? moment : now_; }

    struct WakeUp {
        const void* sleeper;
        Time at;
    };

    /// The sleeper wants to run at that moment, or no longer. Replaces what it asked for before.
    void setWakeUp(const void* sleeper, std::optional<Time> at);

    /// Who wants to run first; of two at one moment, who asked first.
    std::optional<WakeUp> earliestWakeUp() const;

private:
    Time now_{};
    std::vector<WakeUp> wakeUps_;
};

}  // namespace velmora
