#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "platform/foundation/ScriptFile.h"

namespace velmora {

/// A file's modification date at the file system's full resolution: nanoseconds since 1970.
struct NSDate {
    std::int64_t nanoseconds = 0;
    bool operator==(const NSDate&) const = default;
    bool isEqualToDate(const NSDate& other) const { return *this == other; }
};

/// The file operations that the system needs. The desktop says which one a process uses
/// (Desktop::files): the real one, one in memory, or one that injects faults.
/// Paths are absolute, in UTF-8. Nothing throws.
class FileSystem {
public:
    virtual ~FileSystem() = default;

    /// Whether something stands at the path. A symbolic link is followed.
    virtual bool fileExistsAtPath(const std::string& path) = 0;

    /// Creates one directory whose parent exists. False when it could not be created.
    virtual bool createDirectoryAtPath(const std::string& path) = 0;

    /// The modification date of what stands at the path itself: a symbolic link is not followed.
    virtual std::optional<NSDate> modificationDate(const std::string& path) = 0;

    /// The whole contents of a regular file, or nothing; what else stands at the path (a pipe, a
    /// device) is not waited for. A file larger than `limit` bytes counts as unreadable.
    virtual std::optional<std::string> contentsOfFile(const std::string& path,
                                                      std::size_t limit = 256U << 20U) = 0;

    /// Replaces the file as a whole: a reader sees the old contents or the new ones, never a part.
    /// An existing file's mode is kept. When a symbolic link stands at the path, the file that it
    /// points to is replaced, or made, and the link stays. False on failure: the old file is then
    /// unchanged and nothing is left lying about.
    virtual bool writeAtomically(const std::string& path, const std::string& contents) = 0;

    /// Renames, replacing what stands at the new name.
    virtual bool rename(const std::string& from, const std::string& to) = 0;

    virtual bool remove(const std::string& path) = 0;

    /// Creates an executable file that this process alone has until the result, which must not
    /// outlive the file system, is destroyed: then the file is removed. Waits for another
    /// process that has a script file at the path, but not so long that it is noticed. Null when
    /// that takes longer, or when the file cannot be created without touching what is not ours.
    virtual std::unique_ptr<ScriptFile> createScriptFile(const std::string& path,
                                                         const std::string& contents) = 0;
};

}  // namespace velmora
