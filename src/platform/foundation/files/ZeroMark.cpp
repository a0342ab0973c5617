#include "platform/foundation/files/ZeroMark.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace velmora {

namespace {

constexpr std::string_view reference = "&#0;";
constexpr std::string_view zero("\0", 1);

bool holds(std::string_view text, std::string_view part) {
    return text.find(part) != text.npos;
}

std::string replacedAll(std::string_view text, std::string_view from, std::string_view to) {
    std::string result;
    std::size_t at = 0;
    for (;;) {
        const std::size_t found = text.find(from, at);
        result.append(text.substr(at, found - at));
        if (found == text.npos) return result;
        result.append(to);
        at = found + from.size();
    }
}

/// Whether one of the value's texts and keys is as told.
template <class IsIt>
bool anyText(const PropertyList& value, const IsIt& isIt) {
    if (const std::string* text = value.string()) return isIt(*text);
    if (const NSArray* array = value.array()) {
        return std::any_of(array->begin(), array->end(),
                           [&](const PropertyList& item) { return anyText(item, isIt); });
    }
    const NSDictionary* dictionary = value.dictionary();
    if (!dictionary) return false;
    return std::any_of(
        dictionary->entries().begin(), dictionary->entries().end(),
        [&](const auto& entry) { return isIt(entry.first) || anyText(entry.second, isIt); });
}

PropertyList replacedInTexts(const PropertyList& value, std::string_view from,
                             std::string_view to) {
    if (const std::string* text = value.string()) return replacedAll(*text, from, to);
    if (const NSArray* array = value.array()) {
        NSArray replaced;
        replaced.reserve(array->size());
        for (const PropertyList& item : *array) {
            replaced.push_back(replacedInTexts(item, from, to));
        }
        return replaced;
    }
    const NSDictionary* dictionary = value.dictionary();
    if (!dictionary) return value;
    NSDictionary replaced;
    for (const auto& [key, item] : dictionary->entries()) {
        replaced.append(replacedAll(key, from, to), replacedInTexts(item, from, to));
    }
    return replaced;
}

}  // namespace

std::optional<ZeroMark> ZeroMark::missingIn(std::string_view texts) {
    constexpr unsigned first = 0xFDD0;
    constexpr unsigned last = 0xFDEF;
    for (unsigned code = first; code <= last; ++code) {
        const std::string mark = {static_cast<char>(0xEF), static_cast<char>(0xB7),
                                  static_cast<char>(code - first + 0x90)};
        std::array<char, 8> lower{};
        std::array<char, 8> upper{};
        std::snprintf(lower.data(), lower.size(), "%x", code);
        std::snprintf(upper.data(), upper.size(), "%X", code);
        if (!holds(texts, mark) && !holds(texts, lower.data()) && !holds(texts, upper.data()) &&
            !holds(texts, std::to_string(code))) {
            return ZeroMark(mark);
        }
    }
    return std::nullopt;
}

std::optional<ZeroMark> ZeroMark::forDocument(std::string_view xml) {
    // What looks like a reference in a verbatim section is none.
    if (!holds(xml, reference) || holds(xml, "<![CDATA[")) return std::nullopt;
    return missingIn(xml);
}

std::optional<ZeroMark> ZeroMark::forValue(const PropertyList& value) {
    if (!anyText(value, [](const std::string& text) { return holds(text, zero); })) {
        return std::nullopt;
    }
    std::string texts;
    anyText(value, [&](const std::string& text) {
        texts += text;
        return false;
    });
    return missingIn(texts);
}

std::string ZeroMark::hideReferences(std::string_view xml) const {
    return replacedAll(xml, reference, text_);
}

std::string ZeroMark::showReferences(std::string_view xml) const {
    return replacedAll(xml, text_, reference);
}

PropertyList ZeroMark::hideZeros(const PropertyList& value) const {
    return replacedInTexts(value, zero, text_);
}

PropertyList ZeroMark::showZeros(const PropertyList& value) const {
    return replacedInTexts(value, text_, zero);
}

}  // namespace velmora
