#pragma once

#include <string>

namespace velmora {

inline constexpr int versionMajor = 1;
inline constexpr int versionMinor = 4;

/// The version with two digits after the point.
inline std::string productVersion() {
    const std::string minor = std::to_string(versionMinor);
    return std::to_string(versionMajor) + "." + (minor.size() < 2 ? "0" : "") + minor;
}

}  // namespace velmora
