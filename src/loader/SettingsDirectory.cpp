#include "loader/SettingsDirectory.h"

#include <cstdlib>
#include <filesystem>

namespace velmora {

std::string settingsDirectoryOfUser() {
    const char* home = std::getenv("HOME");
    return std::string(home ? home : "") + "/Library/Application Support/Velmora";
}

std::string settingsPathOf(const std::string& name) {
    if (name.find('/') == std::string::npos) return settingsDirectoryOfUser() + '/' + name;
    std::error_code error;
    return std::filesystem::absolute(name, error).lexically_normal().string();
}

}  // namespace velmora
