#pragma once

#include <string>

namespace velmora {

/// One line in the host's log. Neither blocks nor throws; what the log does not take is lost.
void NSLog(const std::string& line);

/// One line that tells what the system does (a gesture, a command that ran), for people who look
/// for a fault. It goes nowhere unless the desktop is asked for such lines. Neither blocks nor
/// throws.
void NSTrace(const std::string& line);

/// Whether trace lines go anywhere; lets a caller spare the making of one.
bool NSTraceEnabled();

}  // namespace velmora
