#include "loader/RunCommand.h"

#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <sstream>

namespace velmora {

namespace {

namespace fs = std::filesystem;

constexpr int cannotRun = 126;
constexpr int notFound = 127;

constexpr const char* pluginName = "velmora";

std::string environment(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

bool holdsPlugin(const fs::path& folder) {
    std::error_code error;
    return fs::exists(folder / "generic" / "libvelmora.so", error);
}

std::string folderOf(const fs::path& tool, const char* qt) {
    const fs::path beside = tool.parent_path();
    for (const fs::path& folder :
         {beside / "plugins" / qt, beside.parent_path() / "lib" / "velmora" / "plugins" / qt}) {
        if (holdsPlugin(folder)) return folder.string();
    }
    return {};
}

int refusal(const std::string& application, int error) {
    std::cerr << "velmora: " << application << ": " << std::strerror(error) << "\n";
    return error == ENOENT || error == ENOTDIR ? notFound : cannotRun;
}

}  // namespace

PluginFolders PluginFolders::beside(const std::string& tool) {
    return {folderOf(tool, "qt5"), folderOf(tool, "qt6")};
}

std::string PluginFolders::forVersion(QtVersion version) const {
    if (version == QtVersion::Five) return qt5;
    if (version == QtVersion::Six) return qt6;
    if (qt5.empty() || qt6.empty()) return qt5 + qt6;
    return qt5 + ':' + qt6;
}

std::string listWith(const std::string& list, const std::string& entry, char separator,
                     bool inFront) {
    if (list.empty()) return entry;
    std::istringstream entries(list);
    for (std::string present; std::getline(entries, present, separator);) {
        if (present == entry) return list;
    }
    return inFront ? entry + separator + list : list + separator + entry;
}

std::string findExecutable(const std::string& name) {
    if (name.find('/') != std::string::npos) return name;
    const std::string path = environment("PATH");
    std::istringstream folders(path.empty() ? "/usr/bin:/bin" : path);
    for (std::string folder; std::getline(folders, folder, ':');) {
        std::error_code error;
        const fs::path file = fs::path(folder.empty() ? "." : folder) / name;
        if (fs::is_regular_file(file, error) && ::access(file.c_str(), X_OK) == 0) {
            return file.string();
        }
    }
    return {};
}

int runApplication(const PluginFolders& folders, const std::vector<std::string>& command) {
    const std::string file = findExecutable(command.front());
    if (file.empty()) {
        std::cerr << "velmora: " << command.front() << ": command not found\n";
        return notFound;
    }
    if (::access(file.c_str(), X_OK) != 0) return refusal(command.front(), errno);
    const QtVersion version = qtVersionOf(file);
    const std::string path = folders.forVersion(version);
    if (path.empty()) {
        std::cerr << "velmora: there is no plug-in for "
                  << (version == QtVersion::Five  ? "Qt 5, with which "
                      : version == QtVersion::Six ? "Qt 6, with which "
                                                  : "any Qt that ")
                  << command.front() << (version == QtVersion::Unknown ? " may use" : " is made")
                  << "\n";
        return cannotRun;
    }
    const std::string search = listWith(environment("QT_PLUGIN_PATH"), path, ':', true);
    const std::string plugins =
        listWith(environment("QT_QPA_GENERIC_PLUGINS"), pluginName, ',', false);
    ::setenv("QT_PLUGIN_PATH", search.c_str(), 1);
    ::setenv("QT_QPA_GENERIC_PLUGINS", plugins.c_str(), 1);

    std::vector<char*> arguments;
    arguments.reserve(command.size() + 1);
    for (const std::string& argument : command) {
        arguments.push_back(const_cast<char*>(argument.c_str()));
    }
    arguments.push_back(nullptr);
    ::execvp(file.c_str(), arguments.data());
    return refusal(command.front(), errno);
}

}  // namespace velmora
