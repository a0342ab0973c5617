#pragma once

#include <string>
#include <vector>

namespace velmora {

/// Prints the files of the settings directory with what they hold. The exit status.
int listSettings();

/// Checks the files, or without any those of the settings directory, and prints what is wrong with
/// them. The exit status: 0 only when nothing is.
int checkSettingsFiles(std::vector<std::string> paths);

}  // namespace velmora
