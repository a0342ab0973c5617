#pragma once

#include <functional>
#include <map>
#include <vector>

#include "platform/port/FileSystem.h"

namespace velmora {

/// Files and folders in memory, for the headless desktop. Several processes may share one. There
/// are no links and no modes; faults come from wrapping it.
class MemoryFileSystem final : public FileSystem {
public:
    /// `clock` gives the date of what is written. Without one, time goes on by a nanosecond with
    /// each write.
    explicit MemoryFileSystem(std::function<NSDate()> clock = {});

    bool fileExistsAtPath(const std::string& path) override;
    bool createDirectoryAtPath(const std::string& path) override;
    std::optional<NSDate> modificationDate(const std::string& path) override;
    std::optional<FileStamp> stamp(const std::string& path) override;
    FileReading read(const std::string& path, std::size_t limit) override;
    std::optional<FileStamp> writeAtomically(const std::string& path,
                                             const std::string& contents) override;
    void settle(const std::string& /*path*/) override {}
    bool duplicate(const std::string& from, const std::string& to) override;
    std::vector<std::string> namesIn(const std::string& folder) override;
    NSDate now() override { return clock_(); }

    /// A folder only when it is empty.
    bool remove(const std::string& path) override;

    std::unique_ptr<ScriptFile> createScriptFile(const std::string& path,
                                                 const std::string& contents) override;

    /// The contents of a script file; nothing when another kind of file stands there.
    std::optional<std::string> scriptContents(const std::string& path);

    /// Makes the folder and those that hold it.
    void createDirectories(const std::string& path);

    /// False when nothing stands at the path.
    bool setModificationDate(const std::string& path, NSDate date);

    /// The paths of all files, sorted.
    std::vector<std::string> files() const;

private:
    class MemoryScriptFile;

    struct Item {
        bool isFolder = false;
        std::string contents;
        NSDate date;
        /// Which one it is of all that were ever made.
        std::uint64_t serial = 0;
        /// Which script file it is; 0 when it is none.
        int script = 0;
    };

    Item& put(const std::string& path, bool isFolder, const std::string& contents);
    FileStamp stampOf(const Item& item) const;
    Item* find(const std::string& path);
    bool parentExists(const std::string& path);
    bool isEmptyFolder(const std::string& path) const;

    int scripts_ = 0;
    std::uint64_t made_ = 0;
    std::function<NSDate()> clock_;
    std::map<std::string, Item> items_;  // by path, without a slash at the end; the root is ""
};

}  // namespace velmora
