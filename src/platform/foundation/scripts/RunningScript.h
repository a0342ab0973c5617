#pragma once

#include <string>

#include "platform/foundation/files/Descriptor.h"

namespace velmora {

/// Tells other processes of the user that this one waits for a program, by a file in the run-time
/// directory (docs/files.md): from its making to its end. The file is locked for that time, so one
/// that a crashed process has left behind is told by having no lock. Without a run-time directory
/// there is none.
class RunningScript {
public:
    /// `name` is what people call it, `process` the program's.
    RunningScript(const std::string& name, int process);
    ~RunningScript();
    RunningScript(const RunningScript&) = delete;
    RunningScript& operator=(const RunningScript&) = delete;

private:
    std::string path_;
    /// Locked; closed where there is none.
    Descriptor file_;
};

}  // namespace velmora
