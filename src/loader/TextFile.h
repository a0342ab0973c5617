#pragma once

#include <string>

namespace velmora {

/// The file's beginning, as much as is ever looked at of a script; empty when it cannot be read.
std::string beginningOf(const std::string& path);

}  // namespace velmora
