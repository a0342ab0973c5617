#pragma once

#include <map>
#include <set>
#include <string>

#include "platform/headless/MemoryFileSystem.h"

namespace velmora {

/// The files that the processes of a session share: in memory, with faults that can be switched on
/// for a path.
class HeadlessFiles final : public FileSystem {
public:
    /// The files themselves, which have no faults.
    MemoryFileSystem& memory() { return memory_; }

    /// From here on writing the file, or anything below the folder, fails; or no longer does.
    void setWriteFails(const std::string& path, bool fails);
    /// From here on reading the file fails, for a reason that may pass, or no longer does.
    void setReadFails(const std::string& path, bool fails);
    /// From here on the file's mode forbids reading it, or no longer does.
    void setReadForbidden(const std::string& path, bool forbidden);

    /// How often the contents of the file have been read.
    int readsOf(const std::string& path) const;
    /// How often the disk has been waited for, for the sake of that file.
    int waitsFor(const std::string& path) const;

    bool fileExistsAtPath(const std::string& path) override;
    bool createDirectoryAtPath(const std::string& path) override;
    std::optional<NSDate> modificationDate(const std::string& path) override;
    std::optional<FileStamp> stamp(const std::string& path) override;
    FileReading read(const std::string& path, std::size_t limit) override;
    std::optional<FileStamp> writeAtomically(const std::string& path,
                                             const std::string& contents) override;
    void settle(const std::string& path) override;
    bool duplicate(const std::string& from, const std::string& to) override;
    std::vector<std::string> namesIn(const std::string& folder) override;
    NSDate now() override { return memory_.now(); }
    bool remove(const std::string& path) override;
    std::unique_ptr<ScriptFile> createScriptFile(const std::string& path,
                                                 const std::string& contents) override;

private:
    bool mayWrite(const std::string& path) const;

    MemoryFileSystem memory_;
    std::set<std::string> unwritable_;
    std::set<std::string> unreadable_;
    std::set<std::string> forbidden_;
    std::map<std::string, int> reads_;
    std::map<std::string, int> waits_;
};

}  // namespace velmora
