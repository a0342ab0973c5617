#include "platform/foundation/NSLog.h"

#include "platform/port/Desktop.h"

namespace velmora {

void NSLog(const std::string& line) {
    if (Desktop* current = currentDesktop()) current->log(line);
}

void NSTrace(const std::string& line) {
    if (Desktop* current = currentDesktop()) current->trace(line);
}

bool NSTraceEnabled() {
    const Desktop* current = currentDesktop();
    return current && current->traceEnabled();
}

}  // namespace velmora
