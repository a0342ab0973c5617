#pragma once

#include <string>

namespace velmora {

/// Which Qt an application is linked with, directly or through its libraries.
enum class QtVersion {
    /// It does not show: a script, say, or a program that loads Qt itself.
    Unknown,
    Five,
    Six,
};

QtVersion qtVersionOf(const std::string& executable);

}  // namespace velmora
