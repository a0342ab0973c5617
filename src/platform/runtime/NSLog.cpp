#include "platform/runtime/NSLog.h"

#include "platform/runtime/ProcessWide.h"

namespace velmora {

namespace {

ProcessWide<LogReceiver*> current(nullptr);

}  // namespace

void setLogReceiver(LogReceiver* receiver) {
    current = receiver;
}

void NSLog(const std::string& line) {
    if (LogReceiver* receiver = *current) receiver->log(line);
}

void NSTrace(const std::string& line) {
    if (LogReceiver* receiver = *current) receiver->trace(line);
}

bool NSTraceEnabled() {
    const LogReceiver* receiver = *current;
    return receiver && receiver->traceEnabled();
}

}  // namespace velmora
