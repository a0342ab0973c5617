#include "platform/foundation/PosixFileSystem.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstdio>

#include "platform/foundation/Descriptor.h"
#include "platform/foundation/PosixScriptFile.h"

namespace velmora {

namespace {

template <class Call>
auto again(Call call) {
    auto result = call();
    while (result < 0 && errno == EINTR) result = call();
    return result;
}

std::string folderOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? std::string() : path.substr(0, slash + 1);
}

/// The file that the path leads to once the links that stand at it are followed, whether it exists
/// or not. Nothing when the links lead in a circle.
std::optional<std::string> linkTarget(std::string path) {
    constexpr int mostLinks = 40;
    for (int links = 0; links < mostLinks; ++links) {
        std::array<char, PATH_MAX> target{};
        const ssize_t size = ::readlink(path.c_str(), target.data(), target.size());
        if (size < 0) return path;
        const std::string_view text(target.data(), static_cast<std::size_t>(size));
        path = text.substr(0, 1) == "/" ? std::string(text) : folderOf(path).append(text);
    }
    return std::nullopt;
}

/// Gives the new file what the old one had. Its owner only where we may: a process of the
/// superuser should not take a user's settings away.
bool adopt(int descriptor, const struct stat& old) {
    if (old.st_uid != ::geteuid() || old.st_gid != ::getegid()) {
        [[maybe_unused]] const int ignored = ::fchown(descriptor, old.st_uid, old.st_gid);
    }
    constexpr mode_t permissions = 07777;
    return ::fchmod(descriptor, old.st_mode & permissions) == 0;
}

/// A new file beside the target; `path` becomes its name.
int createBeside(const std::string& target, mode_t mode, std::string& path) {
    constexpr int attempts = 100;
    static unsigned serial = 0;
    for (int i = 0; i < attempts; ++i) {
        path = folderOf(target) + ".velmora-" + std::to_string(::getpid()) + "-" +
               std::to_string(++serial);
        const int descriptor = again(
            [&] { return ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode); });
        if (descriptor >= 0 || errno != EEXIST) return descriptor;
    }
    return -1;
}

}  // namespace

bool PosixFileSystem::fileExistsAtPath(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0;
}

bool PosixFileSystem::createDirectoryAtPath(const std::string& path) {
    constexpr mode_t everyone = 0777;
    return ::mkdir(path.c_str(), everyone) == 0;
}

std::optional<NSDate> PosixFileSystem::modificationDate(const std::string& path) {
    struct stat status {};
    if (::lstat(path.c_str(), &status) != 0) return std::nullopt;
    // Dates are only compared for equality, so one beyond the range may wrap.
    constexpr std::uint64_t second = 1'000'000'000;
    const auto seconds = static_cast<std::uint64_t>(status.st_mtim.tv_sec);
    const auto rest = static_cast<std::uint64_t>(status.st_mtim.tv_nsec);
    return NSDate{static_cast<std::int64_t>(seconds * second + rest)};
}

std::optional<std::string> PosixFileSystem::contentsOfFile(const std::string& path,
                                                           std::size_t limit) {
    const Descriptor file(
        again([&] { return ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC); }));
    struct stat status {};
    if (!file.isOpen() || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return std::nullopt;
    }
    // The file may grow while it is read, so its size is only a hint.
    const auto expected = static_cast<std::size_t>(status.st_size);
    if (expected > limit) return std::nullopt;
    std::string contents;
    std::size_t size = 0;
    for (;;) {
        constexpr std::size_t least = 4096;
        if (size == contents.size()) contents.resize(std::max({least, expected + 1, size * 2}));
        const ssize_t count = again(
            [&] { return ::read(file.get(), contents.data() + size, contents.size() - size); });
        if (count < 0) return std::nullopt;
        if (count == 0) break;
        size += static_cast<std::size_t>(count);
        if (size > limit) return std::nullopt;
    }
    contents.resize(size);
    return contents;
}

bool PosixFileSystem::writeAtomically(const std::string& path, const std::string& contents) {
    const auto target = linkTarget(path);
    if (!target) return false;
    struct stat old {};
    const bool replaces = ::lstat(target->c_str(), &old) == 0;
    if (replaces && !S_ISREG(old.st_mode)) return false;

    // A new file's mode is left to the process's own mask. What replaces a file is nobody else's to
    // see until it has that file's mode.
    constexpr mode_t everyone = 0666;
    constexpr mode_t owner = 0600;
    std::string aside;
    Descriptor file(createBeside(*target, replaces ? owner : everyone, aside));
    if (!file.isOpen()) return false;
    const bool written = file.writeAll(contents) && (!replaces || adopt(file.get(), old)) &&
                         again([&] { return ::fsync(file.get()); }) == 0;
    if (file.close() && written && ::rename(aside.c_str(), target->c_str()) == 0) return true;
    ::unlink(aside.c_str());
    return false;
}

bool PosixFileSystem::rename(const std::string& from, const std::string& to) {
    return ::rename(from.c_str(), to.c_str()) == 0;
}

bool PosixFileSystem::remove(const std::string& path) {
    return std::remove(path.c_str()) == 0;
}

std::unique_ptr<ScriptFile> PosixFileSystem::createScriptFile(const std::string& path,
                                                              const std::string& contents) {
    return PosixScriptFile::create(path, contents);
}

}  // namespace velmora
