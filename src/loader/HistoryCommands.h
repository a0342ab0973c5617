#pragma once

#include <string>
#include <vector>

namespace velmora {

/// Prints the versions that are kept of the files, or without any of all files of the settings
/// directory, each with what has been changed in it. The exit status.
int listHistory(std::vector<std::string> files);

/// Puts a version back in its file's place, whose contents are kept in their turn. The exit status.
int restoreVersion(const std::string& file, const std::string& version);

}  // namespace velmora
