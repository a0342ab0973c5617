#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/foundation/files/PropertyList.h"

namespace velmora {

/// Why and where a text could not be read. Lines and columns count from 1, columns in bytes.
struct PropertyListError {
    int line = 0;
    int column = 0;
    std::string reason;
};

/// Reads the old text form: quoted and bare strings, ( arrays ), { dictionaries = values; } and
/// < hexadecimal data >, with // and /* */ comments. UTF-8, or UTF-16 with a byte order mark.
///
/// A text that begins with key = value; or key; and no brace is a strings table: the same as if the
/// braces stood around it. The value of a lone key is the key. A text without any value is an empty
/// table. Of a key that comes twice the last value counts.
///
/// In quotes, \a \b \f \n \r \t \v, \ooo (octal) and \Uxxxx (UTF-16, hexadecimal, surrogates in
/// pairs) stand for characters, never for the one numbered 0; another character after a backslash
/// stands for itself. Bare words are of ASCII letters, digits and _$/:.-+
std::optional<PropertyList> propertyListFromOldStyleText(std::string_view text,
                                                         PropertyListError* error = nullptr);

}  // namespace velmora
