#include "loader/SettingsDifference.h"

#include <algorithm>
#include <optional>

#include "platform/foundation/files/PropertyListFile.h"

namespace velmora {

namespace {

std::string textOf(const PropertyList* value) {
    if (!value) return {};
    if (const std::string* text = value->string()) {
        constexpr std::size_t longest = 60;
        std::string line = text->substr(0, text->find('\n'));
        if (line.size() > longest) {
            line.resize(longest);
            // Never half a character.
            while (!line.empty() && (static_cast<unsigned char>(line.back()) & 0x80U) != 0) {
                line.pop_back();
            }
        }
        return line == *text ? line : line + "…";
    }
    if (const bool* flag = value->boolean()) return *flag ? "true" : "false";
    if (const std::int64_t* number = value->integer()) return std::to_string(*number);
    if (value->real()) {
        std::string number = std::to_string(*value->real());
        number.erase(number.find_last_not_of('0') + 1);
        return number.ends_with('.') ? number + '0' : number;
    }
    return "…";
}

std::string quoted(const PropertyList* value) {
    return '"' + textOf(value) + '"';
}

const PropertyList* valueOf(const PropertyList& record, std::string_view key) {
    const NSDictionary* dictionary = record.dictionary();
    return dictionary ? dictionary->objectForKey(key) : nullptr;
}

std::string described(const PropertyList& record) {
    if (!record.dictionary()) return "what is no definition";
    return quoted(valueOf(record, "Trigger")) + " for " + quoted(valueOf(record, "Path"));
}

bool haveSame(const PropertyList& a, const PropertyList& b, std::string_view key) {
    const PropertyList* first = valueOf(a, key);
    const PropertyList* second = valueOf(b, key);
    return first && second && *first == *second;
}

/// Takes the first of the records that is told to be the one.
template <class IsIt>
std::optional<PropertyList> take(NSArray& records, IsIt isIt) {
    const auto found = std::find_if(records.begin(), records.end(), isIt);
    if (found == records.end()) return std::nullopt;
    PropertyList record = std::move(*found);
    records.erase(found);
    return record;
}

std::vector<std::string> between(const NSArray& before, NSArray after) {
    NSArray rest;
    for (const PropertyList& record : before) {
        if (!take(after, [&](const PropertyList& other) { return other == record; })) {
            rest.push_back(record);
        }
    }
    std::vector<std::string> phrases;
    NSArray removed;
    for (PropertyList& record : rest) {
        auto changed = take(
            after, [&](const PropertyList& other) { return haveSame(record, other, "Trigger"); });
        if (!changed) {
            changed = take(
                after, [&](const PropertyList& other) { return haveSame(record, other, "Path"); });
        }
        if (!changed) {
            removed.push_back(std::move(record));
        } else if (described(*changed) != described(record)) {
            phrases.push_back("changed " + described(record) + " to " + described(*changed));
        } else {
            phrases.push_back("changed " + described(record));
        }
    }
    for (const PropertyList& record : removed) phrases.push_back("removed " + described(record));
    for (const PropertyList& record : after) phrases.push_back("added " + described(record));
    return phrases;
}

std::vector<std::string> between(const NSDictionary& before, const NSDictionary& after) {
    std::vector<std::string> phrases;
    for (const auto& [key, value] : before.entries()) {
        const PropertyList* now = after.objectForKey(key);
        if (!now) {
            phrases.push_back("removed " + key);
        } else if (*now != value) {
            phrases.push_back("changed " + key + " from " + textOf(&value) + " to " + textOf(now));
        }
    }
    for (const auto& [key, value] : after.entries()) {
        if (!before.objectForKey(key)) phrases.push_back("added " + key + " " + textOf(&value));
    }
    return phrases;
}

}  // namespace

std::vector<std::string> differencesBetween(std::string_view before, std::string_view after) {
    const std::optional<PropertyList> first = propertyListFromData(before);
    const std::optional<PropertyList> second = propertyListFromData(after);
    if (first && second && first->array() && second->array()) {
        const bool isReordered = *first != *second;
        std::vector<std::string> phrases = between(*first->array(), *second->array());
        if (phrases.empty() && isReordered) phrases.emplace_back("changed the order");
        return phrases;
    }
    if (first && second && first->dictionary() && second->dictionary()) {
        return between(*first->dictionary(), *second->dictionary());
    }
    if (before == after) return {};
    return {"changed all of it"};
}

}  // namespace velmora
