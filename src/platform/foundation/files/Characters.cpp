#include "platform/foundation/files/Characters.h"

#include <clocale>
#include <cwctype>

namespace velmora {

namespace {

constexpr char32_t replacement = 0xFFFD;

/// The C.UTF-8 locale's tables; the host's own locale may know only ASCII, as the C locale does,
/// which is always there.
locale_t unicode() {
    static const locale_t tables = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    static const locale_t ascii = newlocale(LC_CTYPE_MASK, "C", nullptr);
    return tables ? tables : ascii;
}

struct Decoded {
    char32_t character;
    std::size_t length;
};

bool isContinuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

/// The first character of a text that is not empty.
Decoded decode(std::string_view text) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned lead = byte(0);
    if (lead < 0x80) return {lead, 1};
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC2 ? 2 : 0;
    if (length == 0 || lead > 0xF4 || text.size() < length) return {replacement, 1};
    char32_t character = lead & (0xFFU >> (length + 1));
    for (std::size_t i = 1; i < length; ++i) {
        if (!isContinuation(text[i])) return {replacement, 1};
        character = character << 6U | (byte(i) & 0x3FU);
    }
    constexpr char32_t smallest[] = {0, 0, 0x80, 0x800, 0x10000};
    const bool surrogate = character >= 0xD800 && character < 0xE000;
    if (character < smallest[length] || character > 0x10FFFF || surrogate) return {replacement, 1};
    return {character, length};
}

template <class Map>
std::string mapped(std::string_view text, Map map) {
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
        const auto [character, length] = decode(text);
        if (character == replacement) {
            result += text.substr(0, length);
        } else {
            result += stringWithCharacter(map(character));
        }
        text.remove_prefix(length);
    }
    return result;
}

}  // namespace

std::string uppercaseString(std::string_view text) {
    return mapped(text, [](char32_t c) {
        return static_cast<char32_t>(towupper_l(static_cast<wint_t>(c), unicode()));
    });
}

std::string lowercaseString(std::string_view text) {
    return mapped(text, [](char32_t c) {
        return static_cast<char32_t>(towlower_l(static_cast<wint_t>(c), unicode()));
    });
}

std::size_t firstCharacterLength(std::string_view text) {
    return text.empty() ? 0 : decode(text).length;
}

char32_t firstCharacter(std::string_view text) {
    return text.empty() ? 0 : decode(text).character;
}

std::size_t characterCount(std::string_view text) {
    std::size_t count = 0;
    for (; !text.empty(); text.remove_prefix(decode(text).length)) ++count;
    return count;
}

std::string_view wholeCharacters(std::string_view text, std::size_t bytes) {
    if (text.size() <= bytes) return text;
    std::size_t end = bytes;
    // No character has more than four bytes.
    while (end > 0 && bytes - end < 4 && isContinuation(text[end])) --end;
    return text.substr(0, end);
}

std::string stringWithCharacter(char32_t character) {
    const auto byte = [](char32_t value) { return static_cast<char>(value); };
    const auto more = [&](unsigned shift) { return byte(0x80 | (character >> shift & 0x3F)); };
    if (character < 0x80) return {byte(character)};
    if (character < 0x800) return {byte(0xC0 | character >> 6U), more(0)};
    if (character < 0x10000) return {byte(0xE0 | character >> 12U), more(6), more(0)};
    return {byte(0xF0 | character >> 18U), more(12), more(6), more(0)};
}

}  // namespace velmora
