#include "platform/foundation/files/PropertyListFile.h"

#include <plist/plist.h>

#include <algorithm>
#include <array>
#include <bit>
#include <clocale>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <limits>
#include <memory>

#include "platform/foundation/files/OldStylePropertyList.h"
#include "platform/foundation/files/PropertyListGuard.h"
#include "platform/foundation/files/UnicodeText.h"
#include "platform/foundation/files/ZeroMark.h"
#include "platform/port/FileSystem.h"

namespace velmora {

namespace {

struct NodeDeleter {
    void operator()(void* node) const { plist_free(node); }
};
using Node = std::unique_ptr<void, NodeDeleter>;

struct FreeDeleter {
    void operator()(void* memory) const { std::free(memory); }
};

/// The library reads and writes reals by the rules of the host's locale, which may ask for a comma.
class PlainLocale {
public:
    PlainLocale() : previous_(uselocale(plain())) {}
    ~PlainLocale() { uselocale(previous_); }
    PlainLocale(const PlainLocale&) = delete;
    PlainLocale& operator=(const PlainLocale&) = delete;

private:
    static locale_t plain() {
        static const locale_t locale = newlocale(LC_ALL_MASK, "C", nullptr);
        return locale;
    }

    locale_t previous_;
};

// The library's own calls hold a date in 32 bits, so dates pass through a binary list of one.
constexpr std::size_t dateSize = 8;

Node nodeFromDate(double seconds) {
    constexpr std::size_t dateOffset = 9;
    constexpr std::string_view frame(
        "bplist00\x33"
        "\0\0\0\0\0\0\0\0"      // the date
        "\x08"                  // the table: the one object's offset
        "\0\0\0\0\0\0\x01\x01"  // sizes of an offset and of a reference
        "\0\0\0\0\0\0\0\x01"    // objects
        "\0\0\0\0\0\0\0\0"      // the root
        "\0\0\0\0\0\0\0\x11",
        8 + 1 + dateSize + 1 + 32);
    std::string bytes(frame);
    const auto bits = std::bit_cast<std::uint64_t>(seconds);
    for (std::size_t i = 0; i < dateSize; ++i) {
        bytes[dateOffset + i] = static_cast<char>(bits >> (8 * (dateSize - 1 - i)) & 0xFFU);
    }
    plist_t node = nullptr;
    plist_from_bin(bytes.data(), static_cast<std::uint32_t>(bytes.size()), &node);
    return Node(node);
}

double dateFromNode(plist_t node) {
    const Node list(plist_new_array());
    plist_array_append_item(list.get(), plist_copy(node));
    char* memory = nullptr;
    std::uint32_t size = 0;
    plist_to_bin(list.get(), &memory, &size);
    const std::unique_ptr<char, FreeDeleter> owner(memory);
    // Behind the header come the array with its one reference and then the date.
    constexpr std::size_t dateOffset = 8 + 2 + 1;
    std::uint64_t bits = 0;
    for (std::size_t i = dateOffset; i < dateOffset + dateSize && i < size; ++i) {
        bits = bits << 8U | static_cast<std::uint8_t>(memory[i]);
    }
    return std::bit_cast<double>(bits);
}

/// The XML form has four digits for the year.
double secondsForXML(double seconds) {
    constexpr double firstOfYear1 = -63113904000.0;
    constexpr double lastOfYear9999 = 252423993599.0;
    if (std::isnan(seconds)) return 0;
    return std::floor(std::clamp(seconds, firstOfYear1, lastOfYear9999));
}

std::int64_t integerFromNode(plist_t node) {
    std::uint64_t bits = 0;
    plist_get_uint_val(node, &bits);
    if (bits <= std::numeric_limits<std::int64_t>::max()) return static_cast<std::int64_t>(bits);
    // Negative, or too great? The library tells the two apart only when it compares.
    const Node negative(plist_new_uint(bits));
    return plist_compare_node_value(node, negative.get())
               ? static_cast<std::int64_t>(bits)
               : std::numeric_limits<std::int64_t>::max();
}

bool convert(plist_t node, PropertyList& value);

bool convertArray(plist_t node, PropertyList& value) {
    value = NSArray();
    NSArray& array = *value.array();
    array.reserve(plist_array_get_size(node));
    plist_array_iter memory = nullptr;
    plist_array_new_iter(node, &memory);
    const std::unique_ptr<void, FreeDeleter> iterator(memory);
    for (;;) {
        plist_t item = nullptr;
        plist_array_next_item(node, iterator.get(), &item);
        if (!item) break;
        if (!convert(item, array.emplace_back())) return false;
    }
    return true;
}

bool convertDictionary(plist_t node, PropertyList& value) {
    value = NSDictionary();
    NSDictionary& dictionary = *value.dictionary();
    dictionary.reserve(plist_dict_get_size(node));
    plist_dict_iter memory = nullptr;
    plist_dict_new_iter(node, &memory);
    const std::unique_ptr<void, FreeDeleter> iterator(memory);
    for (;;) {
        char* key = nullptr;
        plist_t item = nullptr;
        plist_dict_next_item(node, iterator.get(), &key, &item);
        const std::unique_ptr<char, FreeDeleter> keyOwner(key);
        if (!item || !key) break;
        if (!convert(item, dictionary.append(key, PropertyList()))) return false;
    }
    // Binary lists may hold a key twice.
    dictionary.keepLastOfEachKey();
    return true;
}

/// Its depth is the guard's limit at most.
bool convert(plist_t node, PropertyList& value) {
    std::uint64_t number = 0;
    switch (plist_get_node_type(node)) {
        case PLIST_STRING: {
            const char* text = plist_get_string_ptr(node, &number);
            value = text ? std::string(text, number) : std::string();
            return true;
        }
        case PLIST_BOOLEAN: {
            std::uint8_t flag = 0;
            plist_get_bool_val(node, &flag);
            value = flag != 0;
            return true;
        }
        case PLIST_UINT: value = integerFromNode(node); return true;
        case PLIST_REAL: {
            double real = 0;
            plist_get_real_val(node, &real);
            value = real;
            return true;
        }
        case PLIST_DATE: value = PropertyList::Date{dateFromNode(node)}; return true;
        case PLIST_DATA: {
            const char* bytes = plist_get_data_ptr(node, &number);
            value = PropertyList::Data{bytes ? std::string(bytes, number) : std::string()};
            return true;
        }
        case PLIST_UID: {
            plist_get_uid_val(node, &number);
            NSDictionary reference;
            reference.append("CF$UID", static_cast<std::int64_t>(number));
            value = std::move(reference);
            return true;
        }
        case PLIST_ARRAY: return convertArray(node, value);
        case PLIST_DICT: return convertDictionary(node, value);
        default: return false;
    }
}

Node nodeFromValue(const PropertyList& value);

Node nodeFromArray(const NSArray& array) {
    Node list(plist_new_array());
    for (const PropertyList& item : array) {
        plist_array_append_item(list.get(), nodeFromValue(item).release());
    }
    return list;
}

Node nodeFromDictionary(const NSDictionary& dictionary) {
    Node list(plist_new_dict());
    for (const auto& [key, item] : dictionary.entries()) {
        plist_dict_set_item(list.get(), key.c_str(), nodeFromValue(item).release());
    }
    return list;
}

Node nodeFromValue(const PropertyList& value) {
    if (const auto* text = value.string()) return Node(plist_new_string(text->c_str()));
    if (const auto* flag = value.boolean()) return Node(plist_new_bool(*flag ? 1 : 0));
    if (const auto* number = value.integer()) {
        return Node(plist_new_uint(static_cast<std::uint64_t>(*number)));
    }
    if (const auto* number = value.real()) return Node(plist_new_real(*number));
    if (const auto* date = value.date()) return nodeFromDate(secondsForXML(date->seconds));
    if (const auto* data = value.data()) {
        return Node(plist_new_data(data->bytes.data(), data->bytes.size()));
    }
    if (const auto* array = value.array()) return nodeFromArray(*array);
    return nodeFromDictionary(*value.dictionary());
}

std::string xmlFromNode(const Node& node) {
    char* xml = nullptr;
    std::uint32_t size = 0;
    plist_to_xml(node.get(), &xml, &size);
    const std::unique_ptr<char, FreeDeleter> owner(xml);
    return xml ? std::string(xml, size) : std::string();
}

/// Whether a text that begins with '<' is XML, rather than data in the old form.
bool isXML(std::string_view text) {
    if (text.substr(0, 2) == "<?" || text.substr(0, 2) == "<!") return true;
    const std::size_t nameEnd = std::min(text.find_first_of(" \t\r\n/>", 1), text.size());
    constexpr std::array<std::string_view, 11> elements = {"plist", "dict",    "array", "string",
                                                           "key",   "integer", "real",  "true",
                                                           "false", "date",    "data"};
    return std::find(elements.begin(), elements.end(), text.substr(1, nameEnd - 1)) !=
           elements.end();
}

}  // namespace

std::optional<PropertyList> parsedPropertyList(std::string_view bytes) {
    if (bytes.size() > PropertyListLimits::fileSize) return std::nullopt;
    const PlainLocale locale;
    std::optional<ZeroMark> mark;
    plist_t node = nullptr;
    if (bytes.substr(0, 6) == "bplist") {
        if (!isSoundBinaryPropertyList(bytes)) return std::nullopt;
        plist_from_bin(bytes.data(), static_cast<std::uint32_t>(bytes.size()), &node);
    } else {
        std::string utf8;
        const auto text = utf8FromFileText(bytes, utf8);
        if (!text) return std::nullopt;
        const std::size_t start = text->find_first_not_of(" \t\r\n");
        if (start == text->npos) return std::nullopt;
        if (!isXML(text->substr(start))) return propertyListFromOldStyleText(*text);
        std::string_view xml = text->substr(start);
        std::string hidden;
        mark = ZeroMark::forDocument(xml);
        if (mark) xml = hidden = mark->hideReferences(xml);
        std::string rewritten;
        const auto guarded = guardedXML(xml, rewritten);
        if (!guarded) return std::nullopt;
        plist_from_xml(guarded->data(), static_cast<std::uint32_t>(guarded->size()), &node);
    }
    const Node owner(node);
    PropertyList value;
    if (!node || !convert(node, value)) return std::nullopt;
    if (mark) return mark->showZeros(value);
    return value;
}

std::optional<PropertyList> propertyListFromData(std::string_view bytes) {
    try {
        return parsedPropertyList(bytes);
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

std::string xmlDataFromPropertyList(const PropertyList& value) {
    const PlainLocale locale;
    if (const auto mark = ZeroMark::forValue(value)) {
        return mark->showReferences(xmlFromNode(nodeFromValue(mark->hideZeros(value))));
    }
    return xmlFromNode(nodeFromValue(value));
}

std::optional<NSDictionary> dictionaryWithContentsOfFile(FileSystem& files,
                                                         const std::string& path) {
    const auto bytes = files.contentsOfFile(path, PropertyListLimits::fileSize);
    auto value = bytes ? propertyListFromData(*bytes) : std::nullopt;
    if (!value || !value->dictionary()) return std::nullopt;
    return std::move(*value->dictionary());
}

}  // namespace velmora
