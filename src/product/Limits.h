#pragma once

#include <string_view>

namespace velmora {

/// How many activation slots the preferences have.
inline constexpr int VelmoraSlotCount = 10;

/// The letters of the longest gesture.
inline constexpr int longestGesture = 29;

/// How the path of a gesture's definition begins when it leads into a context menu.
inline constexpr std::string_view contextMenuPrefix = "Context Menu: ";

}  // namespace velmora
