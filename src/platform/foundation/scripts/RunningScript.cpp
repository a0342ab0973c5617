#include "platform/foundation/scripts/RunningScript.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>

#include "platform/foundation/files/PropertyListFile.h"
#include "platform/port/Desktop.h"

namespace velmora {

namespace {

/// Made where it is missing; "" where there is no run-time directory.
std::string folder() {
    constexpr mode_t ownerOnly = 0700;
    const char* directory = std::getenv("XDG_RUNTIME_DIR");
    if (!directory || *directory != '/') return {};
    std::string path = std::string(directory) + "/velmora";
    ::mkdir(path.c_str(), ownerOnly);
    return path;
}

std::string contents(const std::string& name, int process) {
    NSDictionary entries;
    entries.setObject_forKey(PropertyList(name), "Script");
    entries.setObject_forKey(PropertyList(process), "Process");
    entries.setObject_forKey(PropertyList(currentDesktop() ? desktop().processName() : ""), "Host");
    entries.setObject_forKey(PropertyList(::getpid()), "HostProcess");
    return xmlDataFromPropertyList(PropertyList(entries));
}

}  // namespace

RunningScript::RunningScript(const std::string& name, int process) {
    constexpr int flags = O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
    constexpr mode_t ownerOnly = 0600;
    path_ = folder();
    if (path_.empty()) return;
    path_ += "/script-" + std::to_string(::getpid()) + ".plist";
    file_ = Descriptor(::open(path_.c_str(), flags, ownerOnly));
    if (!file_.isOpen()) return;
    ::flock(file_.get(), LOCK_EX | LOCK_NB);
    // Nobody is served by a line that this failed: the program runs all the same.
    static_cast<void>(file_.writeAll(contents(name, process)));
}

RunningScript::~RunningScript() {
    if (file_.isOpen()) ::unlink(path_.c_str());
}

}  // namespace velmora
