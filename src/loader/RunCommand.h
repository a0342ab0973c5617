#pragma once

#include <string>
#include <vector>

#include "loader/QtVersion.h"

namespace velmora {

/// Where the plug-ins lie, one folder a Qt version.
struct PluginFolders {
    std::string qt5;
    std::string qt6;

    /// Beside the tool in a build tree, or below lib/ where it is installed.
    static PluginFolders beside(const std::string& tool);

    /// What of it a program with that Qt is to search.
    std::vector<std::string> forVersion(QtVersion version) const;
};

/// Becomes the application, with the plug-in loaded into it but not into what it starts. Returns
/// only when it cannot, with the exit status that a shell has for that.
int runApplication(const PluginFolders& folders, const std::vector<std::string>& command);

}  // namespace velmora
