#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace velmora {

/// An object: its marker and what follows it.
inline std::string binaryObject(int marker, const std::string& rest = {}) {
    return static_cast<char>(marker) + rest;
}

/// A text object of up to 14 characters.
inline std::string binaryText(const std::string& text) {
    return binaryObject(0x50 + static_cast<int>(text.size()), text);
}

/// A binary property list of these objects, the first of them the root, with two bytes for each
/// offset.
inline std::string binaryPropertyList(const std::vector<std::string>& objects,
                                      std::uint64_t referenceSize = 1) {
    const auto bigEndian = [](std::uint64_t number, int size) {
        std::string bytes;
        for (int i = size - 1; i >= 0; --i) bytes += static_cast<char>(number >> (8 * i) & 0xFFU);
        return bytes;
    };
    std::string list = "bplist00";
    std::string table;
    for (const std::string& object : objects) {
        table += bigEndian(list.size(), 2);
        list += object;
    }
    const std::size_t tableOffset = list.size();
    list += table + std::string(6, '\0') + bigEndian(2, 1) + bigEndian(referenceSize, 1);
    return list + bigEndian(objects.size(), 8) + bigEndian(0, 8) + bigEndian(tableOffset, 8);
}

}  // namespace velmora
