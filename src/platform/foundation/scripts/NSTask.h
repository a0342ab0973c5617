#pragma once

#include <memory>
#include <string>
#include <vector>

namespace velmora {

/// A child process, as the desktop starts it (Desktop::launchProcess).
class NSTask {
public:
    /// Starts the file as a process; null when it cannot be started.
    static std::unique_ptr<NSTask> launchedTaskWithLaunchPath_arguments(
        const std::string& path, const std::vector<std::string>& arguments);

    NSTask() = default;
    virtual ~NSTask() = default;
    NSTask(const NSTask&) = delete;
    NSTask& operator=(const NSTask&) = delete;

    /// What people call it. People are told of a process with a name that makes the host wait.
    void setName(std::string name) { name_ = std::move(name); }
    const std::string& name() const { return name_; }

    /// Blocks until the process has ended.
    virtual void waitUntilExit() = 0;

    /// Whether the process is not known to have ended, as of the last wait.
    virtual bool isRunning() const = 0;

    /// The exit status; the number of the signal that ended it, plus 128, where one did.
    virtual int terminationStatus() const = 0;

private:
    std::string name_;
};

}  // namespace velmora
