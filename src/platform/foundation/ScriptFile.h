#pragma once

#include <memory>
#include <optional>
#include <string>

namespace velmora {

/// An executable file at a path that all users can write to, for the time in which it runs. Nothing
/// that another user has put there is followed, written into or run, and of the user's own processes
/// only one at a time holds the file.
class ScriptFile {
public:
    /// Creates the file with the contents, mode 0744, in place of one that an own process has left
    /// behind. Waits for another own process that runs a script, for some seconds at the most. Null
    /// when that takes longer or the file cannot be created safely.
    static std::unique_ptr<ScriptFile> create(const std::string& path,
                                              const std::string& contents);

    /// Removes the file, if it is still the same.
    ~ScriptFile();
    ScriptFile(const ScriptFile&) = delete;
    ScriptFile& operator=(const ScriptFile&) = delete;

    const std::string& path() const { return path_; }

private:
    ScriptFile() = default;

    std::string path_;
    int lock_ = -1;
    unsigned long long device_ = 0;
    unsigned long long inode_ = 0;
};

}  // namespace velmora
