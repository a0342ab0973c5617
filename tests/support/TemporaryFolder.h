#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>

namespace velmora {

/// A folder on the machine's disk, for as long as it lives.
class TemporaryFolder {
public:
    TemporaryFolder() {
        std::string name = std::filesystem::temp_directory_path() / "velmora-test-XXXXXX";
        path_ = ::mkdtemp(name.data());
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    std::string path() const { return path_; }
    std::string path(const std::string& name) const { return path_ / name; }

private:
    std::filesystem::path path_;
};

}  // namespace velmora
