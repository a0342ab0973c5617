#pragma once

#include <memory>
#include <string>
#include <vector>

namespace velmora {

/// A child process.
class NSTask {
public:
    /// Starts the file as a process; null when it cannot be started. The child gets the host's
    /// environment without what loads the plug-in, no file but the standard ones, and default
    /// signals.
    static std::unique_ptr<NSTask> launchedTaskWithLaunchPath_arguments(
        const std::string& path, const std::vector<std::string>& arguments);

    ~NSTask();
    NSTask(const NSTask&) = delete;
    NSTask& operator=(const NSTask&) = delete;

    /// Blocks until the process has ended.
    void waitUntilExit();
    bool isRunning() const { return running_; }
    /// The exit status; the number of the signal that ended it, plus 128, where one did.
    int terminationStatus() const { return status_; }

private:
    explicit NSTask(int process) : process_(process) {}

    int process_;
    bool running_ = true;
    int status_ = 0;
};

}  // namespace velmora
