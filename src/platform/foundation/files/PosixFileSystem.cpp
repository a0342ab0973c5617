#include "platform/foundation/files/PosixFileSystem.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <memory>
#include <new>
#include <string_view>
#include <system_error>

#include "platform/foundation/files/Descriptor.h"
#include "platform/foundation/files/PosixScriptFile.h"

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

constexpr mode_t ownerOnly = 0600;

/// Files that a process writes before they take another one's place are named after it, and locked
/// for as long as it writes.
constexpr std::string_view temporaryPrefix = ".velmora-";

/// A new file beside the target; `path` becomes its name.
Descriptor createBeside(const std::string& target, std::string& path) {
    constexpr int attempts = 100;
    static std::atomic<unsigned> serial = 0;
    for (int i = 0; i < attempts; ++i) {
        path = folderOf(target)
                   .append(temporaryPrefix)
                   .append(std::to_string(::getpid()) + "-" + std::to_string(++serial));
        Descriptor file(again([&] {
            return ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, ownerOnly);
        }));
        if (file.isOpen()) ::flock(file.get(), LOCK_EX | LOCK_NB);
        if (file.isOpen() || errno != EEXIST) return file;
    }
    return {};
}

/// Whether the name is that of a temporary file whose process is gone, as far as can be told here.
bool isLeftOver(const std::string& name) {
    if (!name.starts_with(temporaryPrefix)) return false;
    const auto process =
        static_cast<pid_t>(std::strtol(name.c_str() + temporaryPrefix.size(), nullptr, 10));
    return process > 0 && ::kill(process, 0) != 0 && errno == ESRCH;
}

/// A process of another container is not seen, but its lock is.
void removeLeftOver(const std::string& path) {
    const Descriptor file(again(
        [&] { return ::open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC); }));
    struct stat status {};
    if (!file.isOpen() || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) return;
    if (::flock(file.get(), LOCK_EX | LOCK_NB) == 0) ::unlink(path.c_str());
}

// Dates are only compared for equality, so one beyond the range may wrap.
template <class Seconds, class Nanoseconds>
NSDate dateOf(Seconds seconds, Nanoseconds rest) {
    constexpr std::uint64_t second = 1'000'000'000;
    return {static_cast<std::int64_t>(static_cast<std::uint64_t>(seconds) * second +
                                      static_cast<std::uint64_t>(rest))};
}

/// The stamp of the path, with links followed, or of the descriptor when the path is empty.
std::optional<FileStamp> stampOf(int descriptor, const char* path) {
    struct statx status {};
    constexpr unsigned wanted = STATX_BASIC_STATS | STATX_BTIME;
    const int flags = *path ? 0 : AT_EMPTY_PATH;
    if (again([&] { return ::statx(descriptor, path, flags, wanted, &status); }) != 0) {
        return std::nullopt;
    }
    FileStamp stamp;
    stamp.kind = S_ISREG(status.stx_mode)   ? FileStamp::Kind::regular
                 : S_ISDIR(status.stx_mode) ? FileStamp::Kind::folder
                                            : FileStamp::Kind::other;
    stamp.device = std::uint64_t{status.stx_dev_major} << 32U | status.stx_dev_minor;
    stamp.inode = status.stx_ino;
    stamp.born = dateOf(status.stx_btime.tv_sec, status.stx_btime.tv_nsec);
    stamp.modified = dateOf(status.stx_mtime.tv_sec, status.stx_mtime.tv_nsec);
    stamp.size = status.stx_size;
    return stamp;
}

/// What a failed call says of the file. Whatever is not known to be about the file itself is about
/// the machine: no descriptor or memory, a mount that does not answer, a bad disk.
FileReading failure(int error) {
    FileReading reading;
    switch (error) {
        case ENOENT:
        case ENOTDIR: reading.outcome = FileReading::Outcome::missing; break;
        case EACCES:
        case EPERM:
        case ELOOP:
        case EISDIR:
        case ENAMETOOLONG:
        case ENXIO:  // a socket, a device that is not there
        case ENODEV:
        case EOVERFLOW: reading.outcome = FileReading::Outcome::unreadable; break;
        default: reading.outcome = FileReading::Outcome::fault;
    }
    reading.reason = std::system_category().message(error);
    return reading;
}

FileReading unreadable(const char* reason) {
    FileReading reading;
    reading.outcome = FileReading::Outcome::unreadable;
    reading.reason = reason;
    return reading;
}

constexpr const char* noFile = "it is no file";

FileReading readAll(const Descriptor& file, std::size_t limit) {
    const auto stamp = stampOf(file.get(), "");
    if (!stamp) return failure(errno);
    if (stamp->kind != FileStamp::Kind::regular) return unreadable(noFile);
    FileReading reading;
    reading.outcome = FileReading::Outcome::read;
    reading.stamp = *stamp;
    // The file may grow while it is read, so its size is only a hint.
    constexpr const char* tooLarge = "it is too large";
    if (stamp->size > limit) return unreadable(tooLarge);
    const auto expected = static_cast<std::size_t>(stamp->size);
    std::string& contents = reading.contents;
    std::size_t size = 0;
    for (;;) {
        constexpr std::size_t least = 4096;
        if (size == contents.size()) contents.resize(std::max({least, expected + 1, size * 2}));
        const ssize_t count = again(
            [&] { return ::read(file.get(), contents.data() + size, contents.size() - size); });
        if (count < 0) return failure(errno);
        if (count == 0) break;
        size += static_cast<std::size_t>(count);
        if (size > limit) return unreadable(tooLarge);
    }
    contents.resize(size);
    return reading;
}

bool isRegular(const std::string& path) {
    struct stat status {};
    return ::lstat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

/// Gives the file the name of the target. A file system may begin to write a file to the disk when
/// it is renamed over another one, and takes a while for that; when the two change places it does
/// not. What is in the target's place by then goes, if it is a file.
bool takePlace(const std::string& aside, const std::string& target, bool replaces) {
    const auto exchange = [&] {
        return ::renameat2(AT_FDCWD, aside.c_str(), AT_FDCWD, target.c_str(), RENAME_EXCHANGE) == 0;
    };
    if (!replaces || !exchange()) return ::rename(aside.c_str(), target.c_str()) == 0;
    if (isRegular(aside)) {
        ::unlink(aside.c_str());
        return true;
    }
    exchange();
    return false;
}

bool copy(const std::string& from, const std::string& to) {
    const Descriptor source(
        again([&] { return ::open(from.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC); }));
    Descriptor made(again(
        [&] { return ::open(to.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, ownerOnly); }));
    if (!made.isOpen()) return false;
    std::array<char, 1U << 16U> part{};
    ssize_t size = -1;
    while (source.isOpen()) {
        size = again([&] { return ::read(source.get(), part.data(), part.size()); });
        if (size <= 0 || !made.writeAll({part.data(), static_cast<std::size_t>(size)})) break;
    }
    const bool done = size == 0;
    if (made.close() && done) return true;
    ::unlink(to.c_str());
    return false;
}

}  // namespace

bool PosixFileSystem::fileExistsAtPath(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0;
}

bool PosixFileSystem::createDirectoryAtPath(const std::string& path) {
    constexpr mode_t owner = 0700;
    return ::mkdir(path.c_str(), owner) == 0;
}

std::optional<NSDate> PosixFileSystem::modificationDate(const std::string& path) {
    struct stat status {};
    if (::lstat(path.c_str(), &status) != 0) return std::nullopt;
    return dateOf(status.st_mtim.tv_sec, status.st_mtim.tv_nsec);
}

std::optional<FileStamp> PosixFileSystem::stamp(const std::string& path) {
    if (path.empty()) return std::nullopt;
    return stampOf(AT_FDCWD, path.c_str());
}

FileReading PosixFileSystem::read(const std::string& path, std::size_t limit) {
    // To open a pipe would wake whoever waits to write into it.
    const auto there = stampOf(AT_FDCWD, path.c_str());
    if (!there) return failure(errno);
    if (there->kind != FileStamp::Kind::regular) return unreadable(noFile);
    const Descriptor file(
        again([&] { return ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC); }));
    if (!file.isOpen()) return failure(errno);
    try {
        return readAll(file, limit);
    } catch (const std::bad_alloc&) {
        return failure(ENOMEM);
    }
}

std::optional<FileStamp> PosixFileSystem::writeAtomically(const std::string& path,
                                                          const std::string& contents) {
    const auto target = linkTarget(path);
    if (!target) return std::nullopt;
    struct stat old {};
    const bool replaces = ::lstat(target->c_str(), &old) == 0;
    if (replaces && !S_ISREG(old.st_mode)) return std::nullopt;

    // What replaces a file is nobody else's to see until it has that file's mode.
    std::string aside;
    Descriptor file = createBeside(*target, aside);
    if (!file.isOpen()) return std::nullopt;
    const bool written = file.writeAll(contents) &&
                         (replaces ? adopt(file.get(), old) : ::fchmod(file.get(), ownerOnly) == 0);
    if (file.close() && written) {
        const auto stamp = stampOf(AT_FDCWD, aside.c_str());
        if (stamp && takePlace(aside, *target, replaces)) return stamp;
    }
    ::unlink(aside.c_str());
    return std::nullopt;
}

void PosixFileSystem::settle(const std::string& path) {
    const auto target = linkTarget(path);
    if (!target) return;
    const Descriptor file(again(
        [&] { return ::open(target->c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC); }));
    if (file.isOpen()) again([&] { return ::fsync(file.get()); });
    const std::string folder = folderOf(*target);
    for (const std::string& name : namesIn(folder)) {
        if (isLeftOver(name)) removeLeftOver(folder + name);
    }
}

bool PosixFileSystem::duplicate(const std::string& from, const std::string& to) {
    if (::linkat(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), AT_SYMLINK_FOLLOW) == 0) return true;
    return errno != EEXIST && copy(from, to);
}

std::vector<std::string> PosixFileSystem::namesIn(const std::string& folder) {
    std::vector<std::string> names;
    const std::unique_ptr<DIR, int (*)(DIR*)> stream(::opendir(folder.c_str()), &::closedir);
    if (!stream) return names;
    while (const dirent* entry = ::readdir(stream.get())) {
        const std::string_view name = entry->d_name;
        if (name != "." && name != "..") names.emplace_back(name);
    }
    return names;
}

NSDate PosixFileSystem::now() {
    struct timespec time {};
    ::clock_gettime(CLOCK_REALTIME, &time);
    return dateOf(time.tv_sec, time.tv_nsec);
}

bool PosixFileSystem::remove(const std::string& path) {
    return std::remove(path.c_str()) == 0;
}

std::unique_ptr<ScriptFile> PosixFileSystem::createScriptFile(const std::string& path,
                                                              const std::string& contents) {
    return PosixScriptFile::create(path, contents);
}

}  // namespace velmora
