#pragma once

#include <string>
#include <vector>

namespace velmora {

/// The settings directory as the plug-in has it in every application.
std::string settingsDirectoryOfUser();

/// The path of a file that a person names: as it is when it has a slash in it, else in the settings
/// directory.
std::string settingsPathOf(const std::string& name);

}  // namespace velmora
