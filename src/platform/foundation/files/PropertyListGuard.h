#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace velmora {

/// What a property list may hold at most. Far above what people write, and low enough that no file
/// exhausts the stack, the memory or the patience of the host.
struct PropertyListLimits {
    static constexpr std::size_t fileSize = std::size_t{64} << 20U;
    static constexpr std::size_t values = std::size_t{1} << 20U;
    static constexpr std::size_t keysOfOneDictionary = 10'000;
    static constexpr int nesting = 256;
};

/// The library that reads XML and binary property lists recurses without a bound, follows shared
/// parts as often as they are referred to, compares each key with many of those before it, aborts
/// the process over the character 0 in a key, and takes a cut-off document for a whole one. What is
/// handed to it passes here first.

/// The XML text to hand over, or nothing when it is no single whole element in a property list's
/// simple syntax (attributes only on the plist element, instructions and a document type without
/// an internal subset only in front of it, no character 0) within the limits. `buffer` must outlive
/// the result: it holds the text where parts of it had to be written differently to be read in
/// reasonable time.
std::optional<std::string_view> guardedXML(std::string_view text, std::string& buffer);

/// Whether the offsets, lengths and references of a binary property list stay inside it, lead in no
/// circle, and stay within the limits when every shared part is counted as often as it is used. No
/// text may hold the character 0.
bool isSoundBinaryPropertyList(std::string_view bytes);

}  // namespace velmora
