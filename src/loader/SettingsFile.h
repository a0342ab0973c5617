#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace velmora {

/// A file of the settings directory by its name: the preferences, or the definitions of one
/// component, for one application or for all.
struct SettingsFile {
    enum class Kind { Preferences, Definitions, Other };

    Kind kind = Kind::Other;
    /// "Gestures" and the like.
    std::string component;
    /// Empty for the definitions that all applications share.
    std::string application;

    static SettingsFile named(const std::string& fileName);
};

/// What a check found in a file.
struct FileReport {
    /// Whether it is the property list that it should be, whatever is wrong inside.
    bool isReadable = false;
    /// How many definitions there are; 0 for preferences.
    int count = 0;
    /// A sentence each, with the place in the file; none in a good file.
    std::vector<std::string> problems;
};

/// Reads the file's contents as the plug-in would, but is not lenient about it.
FileReport checkSettings(const SettingsFile& file, std::string_view contents);

}  // namespace velmora
