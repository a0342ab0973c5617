#pragma once

#include "platform/foundation/scripts/NSTask.h"

namespace velmora {

/// A real child process. It gets the host's environment without what loads the plug-in, the host's
/// working directory, nothing to read, the host's output, no other file, and default signals.
class PosixTask final : public NSTask {
public:
    /// Null when the file, or the interpreter that it names, cannot be started. With a descriptor
    /// for its output the child writes there.
    static std::unique_ptr<PosixTask> launch(const std::string& path,
                                             const std::vector<std::string>& arguments,
                                             int output = -1);

    ~PosixTask() override;

    /// Also ends when somebody else in the host has collected the process: its status is then
    /// unknown and counts as 0. Meanwhile a RunningScript tells of one with a name, and after
    /// some seconds a line in the log.
    void waitUntilExit() override;
    bool isRunning() const override { return running_; }
    int terminationStatus() const override { return status_; }

private:
    explicit PosixTask(int process) : process_(process) {}

    bool endsSoon();
    /// Takes the process's end; false when it has not come, or this must be tried again.
    bool collect(int options);

    int process_;
    bool running_ = true;
    int status_ = 0;
};

/// The entries of an environment ("NAME=VALUE"), without the plug-in's own name in the list of
/// those that an application is to load.
std::vector<std::string> environmentForChild(const char* const* environment);

}  // namespace velmora
