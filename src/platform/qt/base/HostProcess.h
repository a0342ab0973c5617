#pragma once

#include <string>
#include <vector>

namespace velmora {

/// The base name of the running executable, links resolved; for an interpreter that runs a script
/// from a file, the base name of that script.
std::string hostProcessName();

/// The name of any process, from the path of its executable and its arguments.
std::string processNameFor(const std::string& executable,
                           const std::vector<std::string>& arguments);

/// The user's home directory.
std::string userHomeDirectory();

/// Where the resources that belong to this plug-in lie: VELMORA_RESOURCES, or share/velmora in the
/// nearest folder above the plug-in that has one. Empty when there is none.
std::string findResourceDirectory();

/// The user's languages from the environment, most wanted first.
std::vector<std::string> userLanguages();

}  // namespace velmora
