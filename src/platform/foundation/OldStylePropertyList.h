#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/foundation/PropertyList.h"

namespace velmora {

/// Why and where a text could not be read. Lines and columns count from 1, columns in bytes.
struct PropertyListError {
    int line = 0;
    int column = 0;
    std::string reason;
};

/// Reads the old text form: quoted and bare strings, ( arrays ), { dictionaries = values; } and
/// < hexadecimal data >, with // and /* */ comments. A text that begins with key = value; and no
/// brace is a strings table: the same as if the braces stood around it. UTF-8, or UTF-16 with a
/// byte order mark.
std::optional<PropertyList> propertyListFromOldStyleText(std::string_view text,
                                                         PropertyListError* error = nullptr);

}  // namespace velmora
