#pragma once

#include <string>

namespace velmora {

/// The directory in which every definition file and the preferences file lie: Library/Application
/// Support/Velmora in the user's home. The last two are created when missing, each time it is
/// asked for; whether that succeeded shows when a file is written.
std::string settingsDirectory();

}  // namespace velmora
