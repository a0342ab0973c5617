#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace velmora {

/// The text with each character in upper or lower case, one for one as Unicode maps them, whatever
/// locale the host has chosen ("ß" stays). Bytes that are no UTF-8 stay as they are.
std::string uppercaseString(std::string_view text);
std::string lowercaseString(std::string_view text);

/// The bytes of the first character: 0 for an empty text, 1 for a byte that begins none.
std::size_t firstCharacterLength(std::string_view text);

/// The first character, or 0 for an empty text. A byte that begins none stands for U+FFFD.
char32_t firstCharacter(std::string_view text);

/// How many characters the text has.
std::size_t characterCount(std::string_view text);

/// The longest beginning of the text that has at most so many bytes and ends between two
/// characters.
std::string_view wholeCharacters(std::string_view text, std::size_t bytes);

/// The character, which must be no half of a surrogate pair, in UTF-8.
std::string stringWithCharacter(char32_t character);

}  // namespace velmora
