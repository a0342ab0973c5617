#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace velmora {

/// What the web address answers, as Desktop::fetch describes it: by a child process (curl), through
/// a pipe. An address of https stays one when it leads to others.
std::optional<std::string> fetchThroughCurl(const std::string& address, std::size_t mostBytes);

}  // namespace velmora
