#include "platform/qt/base/QtGuard.h"

#include <set>
#include <string>

#include "platform/runtime/NSLog.h"

namespace velmora {

void logFailure(std::string_view what, std::string_view reason) noexcept {
    try {
        // Not destroyed: something may still fail at the end of the process.
        static auto* told = new std::set<std::string, std::less<>>();
        if (!told->emplace(what).second) return;
        NSLog(std::string(what).append(" failed: ").append(reason));
    } catch (...) {
        // There is no memory left to say so.
    }
}

}  // namespace velmora
