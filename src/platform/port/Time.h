#pragma once

#include <chrono>

namespace velmora {

/// A moment of the desktop's steady clock, from an arbitrary start. Deadlines and fire dates are
/// kept in whole nanoseconds, so that they compare exactly.
using Time = std::chrono::nanoseconds;

/// Seconds, as the platform's operations take them.
using NSTimeInterval = double;

inline Time timeFromInterval(NSTimeInterval seconds) {
    return std::chrono::round<Time>(std::chrono::duration<double>(seconds));
}

/// A deadline that is over: a fetch with it only looks into the queue.
inline constexpr Time distantPast = Time::min();

/// A deadline that never comes.
inline constexpr Time distantFuture = Time::max();

}  // namespace velmora
