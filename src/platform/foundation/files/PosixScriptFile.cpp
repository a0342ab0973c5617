#include "platform/foundation/files/PosixScriptFile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <thread>

namespace velmora {

namespace {

constexpr std::chrono::milliseconds pause(10);

template <class Call>
int again(Call call) {
    int result = call();
    while (result < 0 && errno == EINTR) result = call();
    return result;
}

/// Whether nobody but root and ourselves can rename or remove our files in the folder.
bool isTrustworthy(const Descriptor& folder) {
    struct stat status {};
    if (!folder.isOpen() || ::fstat(folder.get(), &status) != 0) return false;
    if (status.st_uid != 0 && status.st_uid != ::geteuid()) return false;
    return (status.st_mode & (S_IWGRP | S_IWOTH)) == 0 || (status.st_mode & S_ISVTX) != 0;
}

/// Whether it can be one of our own files that was left behind.
bool isOwnFile(const struct stat& status) {
    return S_ISREG(status.st_mode) && status.st_uid == ::geteuid() && status.st_nlink == 1;
}

bool isSame(const struct stat& a, const struct stat& b) {
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

}  // namespace

std::unique_ptr<PosixScriptFile> PosixScriptFile::create(const std::string& path,
                                                         const std::string& contents,
                                                         std::chrono::milliseconds patience) {
    const std::string folderPath = path.substr(0, path.rfind('/') + 1);
    Descriptor folder(
        again([&] { return ::open(folderPath.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
    if (!isTrustworthy(folder)) return nullptr;
    std::unique_ptr<PosixScriptFile> script(new PosixScriptFile(path, std::move(folder)));

    const auto deadline = std::chrono::steady_clock::now() + patience;
    for (;;) {
        const Step step = script->acquire();
        if (step == Step::refused) return nullptr;
        if (step == Step::done) return script->write(contents) ? std::move(script) : nullptr;
        if (std::chrono::steady_clock::now() >= deadline) return nullptr;
        std::this_thread::sleep_for(pause);
    }
}

/// One attempt to create the file and to lock it.
PosixScriptFile::Step PosixScriptFile::acquire() {
    constexpr int flags = O_RDONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
    constexpr mode_t ownerOnly = 0600;
    Descriptor file(
        again([&] { return ::openat(folder_.get(), name().c_str(), flags, ownerOnly); }));
    if (!file.isOpen()) return errno == EEXIST ? takeStaleAway() : Step::refused;
    // Before it is locked, another own process may take it for one that was left behind.
    if (::flock(file.get(), LOCK_EX | LOCK_NB) != 0) return Step::again;
    file_ = std::move(file);
    // The process's mask may have taken more than is needed to write it.
    if (isHeldAtPath() && ::fchmod(file_.get(), ownerOnly) == 0) return Step::done;
    file_.close();
    return Step::again;
}

/// Removes an own file that no process holds.
PosixScriptFile::Step PosixScriptFile::takeStaleAway() {
    struct stat status {};
    if (::fstatat(folder_.get(), name().c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0) {
        return errno == ENOENT ? Step::again : Step::refused;
    }
    if (!isOwnFile(status)) return Step::refused;
    constexpr int flags = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
    Descriptor file(again([&] { return ::openat(folder_.get(), name().c_str(), flags); }));
    if (!file.isOpen()) return errno == ENOENT ? Step::again : Step::refused;
    if (::fstat(file.get(), &status) != 0 || !isOwnFile(status)) return Step::refused;
    if (::flock(file.get(), LOCK_EX | LOCK_NB) != 0) return Step::again;
    file_ = std::move(file);
    const bool stuck = isHeldAtPath() && ::unlinkat(folder_.get(), name().c_str(), 0) != 0;
    file_.close();
    return stuck ? Step::refused : Step::again;
}

/// Whether the path still leads to the file that we hold.
bool PosixScriptFile::isHeldAtPath() const {
    struct stat held {};
    struct stat there {};
    return file_.isOpen() && ::fstat(file_.get(), &held) == 0 &&
           ::fstatat(folder_.get(), name().c_str(), &there, AT_SYMLINK_NOFOLLOW) == 0 &&
           isSame(held, there);
}

/// It becomes executable when it is complete, and nothing may have it open for writing when it
/// runs.
bool PosixScriptFile::write(const std::string& contents) {
    constexpr mode_t executable = 0744;
    constexpr int flags = O_WRONLY | O_NOFOLLOW | O_CLOEXEC;
    Descriptor writing(again([&] { return ::openat(folder_.get(), name().c_str(), flags); }));
    struct stat held {};
    struct stat opened {};
    return writing.isOpen() && ::fstat(file_.get(), &held) == 0 &&
           ::fstat(writing.get(), &opened) == 0 && isSame(held, opened) &&
           writing.writeAll(contents) && ::fchmod(writing.get(), executable) == 0 &&
           writing.close();
}

PosixScriptFile::~PosixScriptFile() {
    if (!file_.isOpen()) return;
    if (isHeldAtPath()) ::unlinkat(folder_.get(), name().c_str(), 0);
    // A child of the host that runs no program of its own would keep the lock with the descriptor.
    ::flock(file_.get(), LOCK_UN);
}

}  // namespace velmora
