#include "platform/foundation/scripts/PosixTask.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <optional>
#include <string_view>
#include <thread>

#include "platform/foundation/scripts/RunningScript.h"
#include "platform/runtime/NSLog.h"

namespace velmora {

namespace {

constexpr std::string_view pluginList = "QT_QPA_GENERIC_PLUGINS=";
constexpr std::string_view pluginName = "velmora";

/// Another thread's new child may hold the descriptor through which the file was written until it
/// runs a program of its own.
constexpr int busyAttempts = 200;
constexpr std::chrono::milliseconds busyPause(10);

constexpr int signalled = 128;

/// How long a program may run before the log tells of it.
constexpr std::chrono::seconds patience(3);
/// Between two looks at one that is expected to end soon.
constexpr std::chrono::milliseconds longestPause(10);

/// The list without the entries "velmora" and "velmora:…".
std::string withoutPlugin(std::string_view list) {
    std::string kept;
    while (!list.empty()) {
        const std::string_view entry = list.substr(0, list.find(','));
        list.remove_prefix(std::min(list.size(), entry.size() + 1));
        if (entry.substr(0, entry.find(':')) == pluginName) continue;
        if (!kept.empty()) kept += ',';
        kept += entry;
    }
    return kept;
}

std::vector<char*> pointersTo(const std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (const std::string& text : texts) pointers.push_back(const_cast<char*>(text.c_str()));
    pointers.push_back(nullptr);
    return pointers;
}

/// What is done between the start of the child and its program.
class ChildSetup {
public:
    explicit ChildSetup(int output) {
        constexpr int firstOther = 3;
        ::posix_spawn_file_actions_init(&files_);
        if (output >= 0) ::posix_spawn_file_actions_adddup2(&files_, output, STDOUT_FILENO);
        ::posix_spawn_file_actions_addopen(&files_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        ::posix_spawn_file_actions_addclosefrom_np(&files_, firstOther);
        sigset_t signals;
        ::posix_spawnattr_init(&attributes_);
        ::sigfillset(&signals);
        ::posix_spawnattr_setsigdefault(&attributes_, &signals);
        ::sigemptyset(&signals);
        ::posix_spawnattr_setsigmask(&attributes_, &signals);
        ::posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK);
    }
    ~ChildSetup() {
        ::posix_spawnattr_destroy(&attributes_);
        ::posix_spawn_file_actions_destroy(&files_);
    }
    ChildSetup(const ChildSetup&) = delete;
    ChildSetup& operator=(const ChildSetup&) = delete;

    const posix_spawn_file_actions_t* files() const { return &files_; }
    const posix_spawnattr_t* attributes() const { return &attributes_; }

private:
    posix_spawn_file_actions_t files_;
    posix_spawnattr_t attributes_;
};

}  // namespace

std::vector<std::string> environmentForChild(const char* const* environment) {
    std::vector<std::string> entries;
    for (; environment && *environment; ++environment) {
        std::string entry = *environment;
        if (entry.starts_with(pluginList)) {
            const std::string rest =
                withoutPlugin(std::string_view(entry).substr(pluginList.size()));
            if (rest.empty()) continue;
            entry = std::string(pluginList) + rest;
        }
        entries.push_back(std::move(entry));
    }
    return entries;
}

std::unique_ptr<PosixTask> PosixTask::launch(const std::string& path,
                                             const std::vector<std::string>& arguments,
                                             int output) {
    const std::vector<std::string> environment = environmentForChild(::environ);
    std::vector<std::string> all{path};
    all.insert(all.end(), arguments.begin(), arguments.end());
    const std::vector<char*> argumentPointers = pointersTo(all);
    const std::vector<char*> environmentPointers = pointersTo(environment);
    const ChildSetup setup(output);
    for (int attempt = 0; attempt < busyAttempts; ++attempt) {
        pid_t process = 0;
        const int error = ::posix_spawn(&process, path.c_str(), setup.files(), setup.attributes(),
                                        argumentPointers.data(), environmentPointers.data());
        if (error == 0) return std::unique_ptr<PosixTask>(new PosixTask(process));
        if (error != ETXTBSY) break;
        std::this_thread::sleep_for(busyPause);
    }
    return nullptr;
}

PosixTask::~PosixTask() {
    if (running_) ::waitpid(process_, nullptr, WNOHANG);
}

void PosixTask::waitUntilExit() {
    if (!running_) return;
    std::optional<RunningScript> told;
    if (!name().empty()) {
        told.emplace(name(), process_);
        if (endsSoon()) return;
        const std::string process = std::to_string(process_);
        NSLog("The script \"" + name() + "\" still runs, as process " + process +
              ", and this application waits for it. \"kill " + process + "\" ends it.");
    }
    while (!collect(0) && errno == EINTR) continue;
}

bool PosixTask::endsSoon() {
    const auto deadline = std::chrono::steady_clock::now() + patience;
    std::chrono::milliseconds pause(1);
    while (!collect(WNOHANG)) {
        if (std::chrono::steady_clock::now() >= deadline) return false;
        std::this_thread::sleep_for(pause);
        pause = std::min(2 * pause, longestPause);
    }
    return true;
}

bool PosixTask::collect(int options) {
    int status = 0;
    const int ended = ::waitpid(process_, &status, options);
    if (ended == process_) {
        status_ = WIFEXITED(status) ? WEXITSTATUS(status) : signalled + WTERMSIG(status);
        running_ = false;
    } else if (ended < 0 && errno == ECHILD) {
        // The host ignores the ends of its children, or collects all of them itself.
        running_ = false;
    }
    return !running_;
}

}  // namespace velmora
