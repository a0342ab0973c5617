#pragma once

#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/headless/HeadlessFiles.h"
#include "platform/headless/HeadlessProcess.h"
#include "platform/headless/Transcript.h"
#include "platform/headless/input/HeadlessUser.h"
#include "platform/headless/input/InputQueue.h"
#include "platform/headless/input/VirtualClock.h"

namespace velmora {

/// One user in front of one screen: the time, the pointer and the keys, the files, and the host
/// processes, of which one is current at a time.
class HeadlessSession {
public:
    /// A loop of the host that nothing ends any more.
    struct Endless : std::runtime_error {
        using std::runtime_error::runtime_error;
    };

    /// `resourceDirectory` holds the system's resources, among the machine's own files; "" for
    /// none.
    explicit HeadlessSession(std::string resourceDirectory);
    ~HeadlessSession();
    HeadlessSession(const HeadlessSession&) = delete;
    HeadlessSession& operator=(const HeadlessSession&) = delete;

    VirtualClock& clock() { return clock_; }
    Transcript& transcript() { return transcript_; }
    const Transcript& transcript() const { return transcript_; }
    InputQueue& input() { return input_; }
    HeadlessUser& user() { return user_; }
    HeadlessFiles& files() { return files_; }

    /// The user's home directory, and where the system keeps its settings. Both exist.
    const std::string& homeDirectory() const { return home_; }
    std::string settingsFile(const std::string& name) const;
    const std::string& resourceDirectory() const { return resourceDirectory_; }

    HeadlessProcess& addProcess(const HostDescription& host);
    /// The process of that name, or null.
    HeadlessProcess* processNamed(const std::string& name) const;
    /// Ends the process, which must not run.
    void removeProcess(const HeadlessProcess& process);

    /// The process whose code runs, or null.
    HeadlessProcess* current() const { return running_.empty() ? nullptr : running_.back(); }
    /// Whether the process is current, or waits while another one runs.
    bool isRunning(const HeadlessProcess& process) const;

    /// Makes it the active application; the one that was active resigns. Both are told when they
    /// are current.
    void activate(HeadlessProcess& process);
    /// Leaves no application of the session active.
    void resignActive();

    /// Lets time pass until the deadline or the user's next action, whichever comes first; at the
    /// same moment the deadline does. A loop inside a main loop that still waits when the user is
    /// done sees all buttons and keys released, then Escape typed, and then its modal panel closed.
    /// Throws Endless when it has waited for a minute after that, or would wait for ever.
    void wait(Time deadline);
    /// A loop inside a main loop has ended: one further out, if there is one, waits now.
    void loopEnded() { escapeTyped_ = false; }

private:
    friend class HeadlessProcess;
    void entered(HeadlessProcess& process);
    void left(HeadlessProcess& process);
    void advanceTo(Time moment);
    bool endLoops();

    std::string home_;
    std::string resourceDirectory_;
    VirtualClock clock_;
    Transcript transcript_;
    InputQueue input_{clock_};
    HeadlessUser user_{clock_, input_};
    HeadlessFiles files_;
    std::vector<HeadlessProcess*> running_;
    HeadlessProcess* active_ = nullptr;
    int mainLoops_ = 0;
    bool escapeTyped_ = false;
    /// Since when a loop has waited with nothing left that could end it.
    std::optional<Time> idleSince_;
    std::vector<std::unique_ptr<HeadlessProcess>> processes_;
};

}  // namespace velmora
