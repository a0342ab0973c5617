#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace velmora {

/// The text of a file as UTF-8 without a byte order mark. UTF-16 is known by its byte order mark
/// and is translated into `buffer`, which must outlive the result; anything else is taken to be
/// UTF-8. Nothing when UTF-16 is cut off or not well formed.
std::optional<std::string_view> utf8FromFileText(std::string_view bytes, std::string& buffer);

}  // namespace velmora
