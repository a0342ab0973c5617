#include "platform/foundation/files/UnicodeText.h"

#include <cstdint>

#include "platform/foundation/files/Characters.h"

namespace velmora {

namespace {

enum class ByteOrder { LittleEndian, BigEndian };

bool appendUTF16(std::string& text, std::string_view bytes, ByteOrder order) {
    if (bytes.size() % 2 != 0) return false;
    const auto unitAt = [bytes, order](std::size_t at) {
        const auto first = static_cast<std::uint8_t>(bytes[at]);
        const auto second = static_cast<std::uint8_t>(bytes[at + 1]);
        return order == ByteOrder::BigEndian ? char32_t{first} << 8U | second
                                             : char32_t{second} << 8U | first;
    };
    text.reserve(bytes.size());
    for (std::size_t at = 0; at < bytes.size(); at += 2) {
        char32_t unit = unitAt(at);
        if (unit >= 0xDC00 && unit <= 0xDFFF) return false;
        if (unit >= 0xD800 && unit <= 0xDBFF) {
            at += 2;
            if (at >= bytes.size()) return false;
            const char32_t low = unitAt(at);
            if (low < 0xDC00 || low > 0xDFFF) return false;
            unit = 0x10000 + ((unit - 0xD800) << 10U) + (low - 0xDC00);
        }
        text += stringWithCharacter(unit);
    }
    return true;
}

}  // namespace

std::optional<std::string_view> utf8FromFileText(std::string_view bytes, std::string& buffer) {
    if (bytes.substr(0, 3) == "\xEF\xBB\xBF") return bytes.substr(3);
    std::optional<ByteOrder> order;
    if (bytes.substr(0, 2) == "\xFE\xFF") order = ByteOrder::BigEndian;
    if (bytes.substr(0, 2) == "\xFF\xFE") order = ByteOrder::LittleEndian;
    if (!order) return bytes;
    buffer.clear();
    if (!appendUTF16(buffer, bytes.substr(2), *order)) return std::nullopt;
    return buffer;
}

}  // namespace velmora
