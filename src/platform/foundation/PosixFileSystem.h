#pragma once

#include "platform/foundation/FileSystem.h"

namespace velmora {

/// The files of this machine.
class PosixFileSystem final : public FileSystem {
public:
    bool fileExistsAtPath(const std::string& path) override;
    bool createDirectoryAtPath(const std::string& path) override;
    std::optional<NSDate> modificationDate(const std::string& path) override;
    std::optional<std::string> contentsOfFile(const std::string& path, std::size_t limit) override;

    /// The contents are on the disk before they take the old file's place, so that a power cut
    /// leaves one or the other. Which of the two is not forced: the folder is not synchronised.
    bool writeAtomically(const std::string& path, const std::string& contents) override;

    bool rename(const std::string& from, const std::string& to) override;
    bool remove(const std::string& path) override;
    std::unique_ptr<ScriptFile> createScriptFile(const std::string& path,
                                                 const std::string& contents) override;
};

}  // namespace velmora
