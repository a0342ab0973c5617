#pragma once

#include <string>

namespace velmora {

/// Where the lines of this process go. None of the operations blocks or throws; a line that cannot
/// be taken is lost.
class LogReceiver {
public:
    virtual void log(const std::string& line) = 0;
    virtual void trace(const std::string& line) = 0;
    /// Whether trace lines go anywhere.
    virtual bool traceEnabled() const = 0;

protected:
    ~LogReceiver() = default;
};

/// The receiver is not owned. With none, lines are lost.
void setLogReceiver(LogReceiver* receiver);

/// One line in the host's log. Neither blocks nor throws.
void NSLog(const std::string& line);

/// One line that tells what the system does (a gesture, a command that ran), for people who look
/// for a fault. It goes nowhere unless the desktop is asked for such lines. Neither blocks nor
/// throws.
void NSTrace(const std::string& line);

/// Whether trace lines go anywhere; lets a caller spare the making of one.
bool NSTraceEnabled();

}  // namespace velmora
