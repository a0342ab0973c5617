#include "loader/FindExecutable.h"

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <sstream>

namespace velmora {

namespace fs = std::filesystem;

std::string findExecutable(const std::string& name) {
    if (name.find('/') != std::string::npos) return name;
    const char* path = std::getenv("PATH");
    std::istringstream folders(path && *path ? path : "/usr/bin:/bin");
    for (std::string folder; std::getline(folders, folder, ':');) {
        std::error_code error;
        const fs::path file = fs::path(folder.empty() ? "." : folder) / name;
        if (fs::is_regular_file(file, error) && ::access(file.c_str(), X_OK) == 0) {
            return file.string();
        }
    }
    return {};
}

}  // namespace velmora
