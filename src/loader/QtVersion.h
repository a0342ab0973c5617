#pragma once

#include <string>
#include <vector>

namespace velmora {

/// Which Qt an application uses.
enum class QtVersion {
    /// It does not show: a program that loads Qt itself, say.
    Unknown,
    Five,
    Six,
};

/// Looks for it in what the program is linked with, directly or through its libraries, in what a
/// Python program imports, and in what a shell script starts. The command is the program and its
/// arguments.
QtVersion qtVersionOf(const std::vector<std::string>& command);

}  // namespace velmora
