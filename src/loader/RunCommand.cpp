#include "loader/RunCommand.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <iostream>

#include "loader/FindExecutable.h"
#include "platform/foundation/AddedEnvironment.h"

namespace velmora {

namespace {

namespace fs = std::filesystem;

constexpr int cannotRun = 126;
constexpr int notFound = 127;

constexpr const char* pluginName = "velmora";

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

std::vector<std::string> PluginFolders::forVersion(QtVersion version) const {
    std::vector<std::string> folders;
    if (version != QtVersion::Six && !qt5.empty()) folders.push_back(qt5);
    if (version != QtVersion::Five && !qt6.empty()) folders.push_back(qt6);
    return folders;
}

int runApplication(const PluginFolders& folders, const std::vector<std::string>& command) {
    const std::string file = findExecutable(command.front());
    if (file.empty()) {
        std::cerr << "velmora: " << command.front() << ": command not found\n";
        return notFound;
    }
    if (::access(file.c_str(), X_OK) != 0) return refusal(command.front(), errno);
    const QtVersion version = qtVersionOf(command);
    const std::vector<std::string> paths = folders.forVersion(version);
    if (paths.empty()) {
        std::cerr << "velmora: there is no plug-in for "
                  << (version == QtVersion::Five  ? "Qt 5, with which "
                      : version == QtVersion::Six ? "Qt 6, with which "
                                                  : "any Qt that ")
                  << command.front() << (version == QtVersion::Unknown ? " may use" : " is made")
                  << "\n";
        return cannotRun;
    }
    using Added = AddedEnvironment;
    for (auto path = paths.rbegin(); path != paths.rend(); ++path) {
        Added::add("QT_PLUGIN_PATH", *path, Added::List::Folders, Added::Place::Front);
    }
    Added::add("QT_QPA_GENERIC_PLUGINS", pluginName, Added::List::Names, Added::Place::End);

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
