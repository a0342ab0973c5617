#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/port/ScriptFile.h"

namespace velmora {

/// A file's modification date at the file system's full resolution: nanoseconds since 1970.
struct NSDate {
    std::int64_t nanoseconds = 0;
    bool operator==(const NSDate&) const = default;
    bool isEqualToDate(const NSDate& other) const { return *this == other; }
};

/// Which file stands at a path, and in which state: equal as long as it is the same one and nobody
/// has written to it.
struct FileStamp {
    enum class Kind { regular, folder, other };
    Kind kind = Kind::regular;
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    /// When the file was made, where the file system knows.
    NSDate born;
    NSDate modified;
    std::uint64_t size = 0;

    bool operator==(const FileStamp&) const = default;
    bool isSameFile(const FileStamp& other) const {
        return device == other.device && inode == other.inode && born == other.born;
    }
};

/// What came of reading a file.
struct FileReading {
    enum class Outcome {
        read,
        missing,
        /// Something stands there and is not for us to read: forbidden, no regular file, too large.
        unreadable,
        /// The state of the machine is in the way, and may change: what stands there is not known.
        fault,
    };
    Outcome outcome = Outcome::missing;
    std::string contents;
    /// Tells the file that was read from any later one.
    FileStamp stamp;
    /// What is in the way, for people.
    std::string reason;
};

/// The file operations that the system needs. The desktop says which one a process uses
/// (Desktop::files): the real one, one in memory, or one that injects faults.
/// Paths are absolute, in UTF-8. Nothing throws.
class FileSystem {
public:
    virtual ~FileSystem() = default;

    /// Whether something stands at the path. A symbolic link is followed.
    virtual bool fileExistsAtPath(const std::string& path) = 0;

    /// Creates one directory, for its owner alone, whose parent exists. False when it could not be
    /// created.
    virtual bool createDirectoryAtPath(const std::string& path) = 0;

    /// The modification date of what stands at the path itself: a symbolic link is not followed.
    virtual std::optional<NSDate> modificationDate(const std::string& path) = 0;

    /// What stands at the path, links followed; nothing when nothing can be found there.
    virtual std::optional<FileStamp> stamp(const std::string& path) = 0;

    /// Reads a regular file as a whole; what else stands at the path (a pipe, a device) is not
    /// waited for. A file larger than `limit` bytes counts as unreadable.
    virtual FileReading read(const std::string& path, std::size_t limit) = 0;

    /// The contents alone, or nothing.
    std::optional<std::string> contentsOfFile(const std::string& path,
                                              std::size_t limit = 256U << 20U) {
        FileReading reading = read(path, limit);
        if (reading.outcome != FileReading::Outcome::read) return std::nullopt;
        return std::move(reading.contents);
    }

    /// Replaces the file as a whole: a reader sees the old contents or the new ones, never a part.
    /// An existing file's mode is kept, a new one is its owner's alone. When a symbolic link stands
    /// at the path, the file that it points to is replaced, or made, and the link stays. The stamp
    /// of the new file; nothing on failure: the old file is then unchanged and nothing is left
    /// lying about. The disk is not waited for: see settle.
    virtual std::optional<FileStamp> writeAtomically(const std::string& path,
                                                     const std::string& contents) = 0;

    /// Waits until what was written to the file is on the disk, and removes what processes that are
    /// gone left beside it in the middle of a write.
    virtual void settle(const std::string& path) = 0;

    /// Gives the regular file at `from` a second name, or makes a copy of it where that cannot be,
    /// so that `to` holds what `from` does now, also when `from` is replaced. False on failure, and
    /// when something stands at `to`.
    virtual bool duplicate(const std::string& from, const std::string& to) = 0;

    /// The names in a folder, in no order; none when it cannot be read.
    virtual std::vector<std::string> namesIn(const std::string& folder) = 0;

    /// The moment by the clock of the file system.
    virtual NSDate now() = 0;

    virtual bool remove(const std::string& path) = 0;

    /// Creates an executable file that this process alone has until the result, which must not
    /// outlive the file system, is destroyed: then the file is removed. Waits for another
    /// process that has a script file at the path, but not so long that it is noticed. Null when
    /// that takes longer, or when the file cannot be created without touching what is not ours.
    virtual std::unique_ptr<ScriptFile> createScriptFile(const std::string& path,
                                                         const std::string& contents) = 0;
};

}  // namespace velmora
