#pragma once

#include <exception>
#include <string>
#include <string_view>

#include "platform/runtime/NSLog.h"

namespace velmora {

/// Tells of a failure in the log; of one place only once, since the host calls us for every event.
void logFailure(std::string_view what, std::string_view reason) noexcept;

/// Does the work where the host calls us; what it throws becomes a line in the log, so that nothing
/// gets into the host.
template <class Work>
void guarded(std::string_view what, Work&& work) noexcept {
    try {
        work();
    } catch (const std::exception& exception) {
        logFailure(what, exception.what());
    } catch (...) {
        logFailure(what, "unknown exception");
    }
}

}  // namespace velmora
