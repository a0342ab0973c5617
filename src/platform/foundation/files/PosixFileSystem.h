#pragma once

#include "platform/port/FileSystem.h"

namespace velmora {

/// The files of this machine.
class PosixFileSystem final : public FileSystem {
public:
    bool fileExistsAtPath(const std::string& path) override;
    bool createDirectoryAtPath(const std::string& path) override;
    std::optional<NSDate> modificationDate(const std::string& path) override;
    std::optional<FileStamp> stamp(const std::string& path) override;
    FileReading read(const std::string& path, std::size_t limit) override;
    std::optional<FileStamp> writeAtomically(const std::string& path,
                                             const std::string& contents) override;

    /// The folder itself is not synchronised: a power cut right after leaves the old file or the
    /// new one.
    void settle(const std::string& path) override;

    bool duplicate(const std::string& from, const std::string& to) override;
    std::vector<std::string> namesIn(const std::string& folder) override;
    NSDate now() override;
    bool remove(const std::string& path) override;
    std::unique_ptr<ScriptFile> createScriptFile(const std::string& path,
                                                 const std::string& contents) override;
};

}  // namespace velmora
