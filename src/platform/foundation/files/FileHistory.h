#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace velmora {

class FileSystem;

/// What a file held before it was replaced. The versions lie in the folder `History` beside the
/// file, each under the file's name and the moment at which it was replaced.
class FileHistory {
public:
    static constexpr std::size_t mostVersions = 30;

    /// The file system outlives the history; the file need not exist.
    FileHistory(FileSystem& files, const std::string& path);

    /// Oldest first: UTC to the millisecond, as "2026-01-31T23-59-59.999Z".
    std::vector<std::string> versions() const;
    std::string pathOf(const std::string& version) const { return prefix_ + version; }

    /// Keeps what the file holds now, as its newest version, and says which; nothing on failure.
    /// What was beyond the most then is removed by removeOldest, not before the file was replaced.
    std::optional<std::string> keep();
    /// Keeps contents that the file might have had.
    std::optional<std::string> keep(const std::string& contents);
    void remove(const std::string& version);
    void removeOldest();

private:
    std::string nextVersion();

    FileSystem& files_;
    std::string path_;
    std::string folder_;
    std::string name_;
    std::string prefix_;
    /// As they were found when the last one was kept, with that one.
    std::vector<std::string> kept_;
};

}  // namespace velmora
