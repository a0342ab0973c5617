#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace velmora {

/// What happened to a settings file between two versions of its contents, a phrase each: "added",
/// "removed" or "changed" and what. None when they hold the same.
std::vector<std::string> differencesBetween(std::string_view before, std::string_view after);

}  // namespace velmora
