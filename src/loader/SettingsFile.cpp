#include "loader/SettingsFile.h"

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <set>

#include "platform/foundation/files/PropertyListFile.h"
#include "product/Components.h"
#include "product/Limits.h"

namespace velmora {

namespace {

constexpr std::string_view extension = ".plist";
constexpr std::string_view sharedName = "Velmora";

std::string quoted(const std::string& text) {
    return '"' + text + '"';
}

bool isGesture(const std::string& trigger) {
    if (trigger.empty() || trigger.size() > std::size_t{longestGesture}) return false;
    return trigger.find_first_not_of("udlr") == std::string::npos &&
           std::adjacent_find(trigger.begin(), trigger.end()) == trigger.end();
}

/// One upper-case hexadecimal digit, then the key; the digit alone is no shortcut.
bool isShortcut(const std::string& trigger) {
    return !trigger.empty() &&
           std::string_view("0123456789ABCDEF").find(trigger[0]) != std::string_view::npos;
}

/// The old text form holds nothing but texts: there a number is a text of digits.
std::optional<double> numberOf(const PropertyList& value) {
    if (const std::int64_t* integer = value.integer()) return static_cast<double>(*integer);
    if (const double* real = value.real()) return *real;
    const std::string* text = value.string();
    if (!text || text->empty()) return std::nullopt;
    char* end = nullptr;
    const double number = std::strtod(text->c_str(), &end);
    return end == text->c_str() + text->size() ? std::optional(number) : std::nullopt;
}

std::string whole(double number) {
    return std::to_string(static_cast<std::int64_t>(number));
}

class Checker {
public:
    explicit Checker(FileReport& report) : report_(report) {}

    void definitions(const SettingsFile& file, const NSArray& records) {
        report_.count = static_cast<int>(records.size());
        for (std::size_t i = 0; i < records.size(); ++i) {
            place_ = "definition " + std::to_string(i + 1) + ": ";
            if (const NSDictionary* record = records[i].dictionary()) {
                definition(file, *record);
            } else {
                tell("is no dictionary");
            }
        }
    }

    void preferences(const NSDictionary& values) {
        std::set<std::string, std::less<>> known = {
            "gestureSize", "gestureTimeout", "makeGestureWindowKey", "drawsFeedback", "flavor"};
        for (int slot = 0; slot < VelmoraSlotCount; ++slot) {
            const std::string number = std::to_string(slot);
            known.insert({"modifiers" + number, "mouseButton" + number, "isEnabled" + number});
            range(values, "modifiers" + number, 0, 31);
            range(values, "mouseButton" + number, -1, 31);
            flag(values, "isEnabled" + number);
        }
        range(values, "gestureSize", 0, 32767);
        range(values, "gestureTimeout", 0, 3'600'000);
        flag(values, "makeGestureWindowKey");
        flag(values, "drawsFeedback");
        hue(values);
        unknownKeys(values, known);
    }

private:
    void tell(const std::string& problem) { report_.problems.push_back(place_ + problem); }

    void definition(const SettingsFile& file, const NSDictionary& record) {
        for (const char* key : {"Path", "Trigger", "Selector"}) {
            const PropertyList* value = record.objectForKey(key);
            if (!value && key != std::string_view("Selector")) {
                tell("has no " + quoted(key));
            } else if (value && !value->string()) {
                tell(quoted(key) + " is no text");
            }
        }
        flag(record, "isGlobal");
        unknownKeys(record, {"Path", "Trigger", "Selector", "isGlobal"});
        const PropertyList* value = record.objectForKey("Trigger");
        const std::string* trigger = value ? value->string() : nullptr;
        if (!trigger) return;
        if (file.component == "Gestures" && !isGesture(*trigger)) {
            tell(quoted(*trigger) +
                 " is no gesture: 1 to 29 letters u, d, l, r, no two neighbours alike");
        }
        if (file.component == "Shortcuts" && !isShortcut(*trigger)) {
            tell(quoted(*trigger) + " is no shortcut: one of the digits 0 to F, then the key");
        }
    }

    void range(const NSDictionary& values, const std::string& key, double least, double most) {
        const PropertyList* value = values.objectForKey(key);
        if (!value) return;
        const std::optional<double> number = numberOf(*value);
        if (!number || value->real()) {
            tell(quoted(key) + " is no whole number");
        } else if (!(*number >= least && *number <= most)) {
            tell(quoted(key) + " is not from " + whole(least) + " to " + whole(most));
        }
    }

    void flag(const NSDictionary& values, const std::string& key) {
        const PropertyList* value = values.objectForKey(key);
        if (!value || value->boolean()) return;
        const std::optional<double> number = numberOf(*value);
        if (!number || (*number != 0 && *number != 1)) {
            tell(quoted(key) + " is neither true nor false");
        }
    }

    void hue(const NSDictionary& values) {
        const PropertyList* value = values.objectForKey("flavor");
        if (!value) return;
        const std::optional<double> number = numberOf(*value);
        if (!number || !(*number >= 0 && *number < 60)) {
            tell("\"flavor\" is no number from 0 up to 60");
        }
    }

    void unknownKeys(const NSDictionary& values, const std::set<std::string, std::less<>>& known) {
        for (const auto& [key, value] : values.entries()) {
            if (known.find(key) == known.end()) tell(quoted(key) + " is no key of such a file");
        }
    }

    FileReport& report_;
    std::string place_;
};

}  // namespace

SettingsFile SettingsFile::named(const std::string& fileName) {
    SettingsFile file;
    if (!fileName.ends_with(extension)) return file;
    const std::string stem = fileName.substr(0, fileName.size() - extension.size());
    if (stem == "VelmoraDefaults") {
        file.kind = Kind::Preferences;
        return file;
    }
    for (const Component& known : productComponents) {
        const std::string_view component = known.name;
        if (!stem.ends_with(component) || stem.size() == component.size()) continue;
        file.kind = Kind::Definitions;
        file.component = component;
        file.application = stem.substr(0, stem.size() - component.size());
        if (file.application == sharedName) file.application.clear();
    }
    return file;
}

FileReport checkSettings(const SettingsFile& file, std::string_view contents) {
    FileReport report;
    const std::optional<PropertyList> root = propertyListFromData(contents);
    if (!root) {
        report.problems.emplace_back("cannot be read: it is no property list");
        return report;
    }
    Checker checker(report);
    const NSArray* records = root->array();
    const NSDictionary* values = root->dictionary();
    if (records && file.kind != SettingsFile::Kind::Preferences) {
        report.isReadable = true;
        checker.definitions(file, *records);
    } else if (values && file.kind != SettingsFile::Kind::Definitions) {
        report.isReadable = true;
        checker.preferences(*values);
    } else if (file.kind == SettingsFile::Kind::Definitions) {
        report.problems.emplace_back("holds no array of definitions");
    } else if (file.kind == SettingsFile::Kind::Preferences) {
        report.problems.emplace_back("holds no dictionary of preferences");
    } else {
        report.problems.emplace_back("holds neither definitions nor preferences");
    }
    return report;
}

}  // namespace velmora
