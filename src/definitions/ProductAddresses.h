#pragma once

#include <string_view>

namespace velmora {

/// Where the product and its maker are found. The only place that knows.
inline constexpr std::string_view productHomePage = "https://velmora.example/";
inline constexpr std::string_view updateDescription =
    "https://velmora.example/VelmoraVersion.plist";
inline constexpr std::string_view makerHomePage = "https://korvane.example/";

}  // namespace velmora
