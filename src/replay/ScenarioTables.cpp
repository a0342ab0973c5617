#include "replay/ScenarioTables.h"

#include <array>
#include <limits>
#include <utility>

#include "platform/foundation/files/PropertyListFile.h"
#include "product/Components.h"

namespace velmora {

namespace {

/// The bit of a modifier key in the preferences file.
int compactModifier(const ScenarioLine& line, std::uint32_t flag) {
    switch (flag) {
        case 0x20000: return 1;    // Shift
        case 0x40000: return 2;    // Control
        case 0x80000: return 4;    // Option
        case 0x100000: return 8;   // Command
        case 0x800000: return 16;  // Function
        default: line.fail("a slot has: shift, control, option, command, function");
    }
}

void parseSlot(ScenarioLine& line, NSDictionary& preferences) {
    const std::string index = std::to_string(line.integer("a slot", 0, 9));
    const std::string buttonName = line.word("a mouse button or none");
    std::optional<int> button = mouseButtonNamed(buttonName);
    if (buttonName == "none") button = -1;
    if (!button) line.fail(buttonName + " is no mouse button");
    int mask = 0;
    std::uint32_t flag = 0;
    while (line.takeModifier(flag)) mask |= compactModifier(line, flag);
    preferences.setObject_forKey(mask, "modifiers" + index);
    preferences.setObject_forKey(*button, "mouseButton" + index);
    preferences.setObject_forKey(!line.take("off"), "isEnabled" + index);
}

bool parseFlag(ScenarioLine& line) {
    if (line.take("yes")) return true;
    if (line.take("no")) return false;
    line.fail("expected yes or no");
}

std::string describeRow(const NSDictionary& row) {
    const auto text = [&](const char* key) {
        const PropertyList* value = row.objectForKey(key);
        return value && value->string() ? '"' + *value->string() + '"' : std::string("(none)");
    };
    const PropertyList* global = row.objectForKey("isGlobal");
    return text("Trigger") + " -> " + text("Path") + " runs " + text("Selector") +
           (global && global->boolValue().value_or(false) ? " global" : "");
}

std::string describeScalar(const PropertyList& value) {
    if (const std::string* text = value.string()) return '"' + *text + '"';
    if (const bool* flag = value.boolean()) return *flag ? "true" : "false";
    if (const std::int64_t* number = value.integer()) return std::to_string(*number);
    if (const double* number = value.real()) return std::to_string(*number);
    return xmlDataFromPropertyList(value);
}

}  // namespace

std::string takeComponent(ScenarioLine& line) {
    for (const auto& [component, word] : productComponents) {
        if (line.take(word)) return component;
    }
    return {};
}

std::string parseDefinitionFileName(ScenarioLine& line, const std::string& component) {
    if (line.take("of everyone")) return "Velmora" + component + ".plist";
    if (!line.take("of")) line.fail("expected of HOST or of everyone");
    return line.word("a host") + component + ".plist";
}

PropertyList parseDefinitions(ScenarioText& text, const ScenarioLine& line) {
    NSArray rows;
    text.block(line, [&](ScenarioLine& inner) {
        NSDictionary row;
        const std::string trigger = inner.word("a trigger");
        if (!inner.take("->")) inner.fail("expected -> after the trigger");
        row.setObject_forKey(inner.word("a menu path"), "Path");
        row.setObject_forKey(trigger, "Trigger");
        row.setObject_forKey(inner.take("runs") ? inner.word("an action") : std::string(),
                             "Selector");
        row.setObject_forKey(inner.take("global"), "isGlobal");
        inner.end();
        if (inner.opensBlock()) inner.fail("a definition opens no block");
        rows.emplace_back(std::move(row));
    });
    return rows;
}

PropertyList parsePreferences(ScenarioText& text, const ScenarioLine& line) {
    NSDictionary preferences;
    text.block(line, [&](ScenarioLine& inner) {
        constexpr int most = std::numeric_limits<int>::max();
        if (inner.take("slot")) {
            parseSlot(inner, preferences);
        } else if (inner.take("gesture size")) {
            preferences.setObject_forKey(inner.integer("a size", -most, most), "gestureSize");
        } else if (inner.take("gesture timeout")) {
            preferences.setObject_forKey(inner.integer("a time", -most, most), "gestureTimeout");
        } else if (inner.take("make key")) {
            preferences.setObject_forKey(parseFlag(inner), "makeGestureWindowKey");
        } else if (inner.take("feedback")) {
            preferences.setObject_forKey(parseFlag(inner), "drawsFeedback");
        } else if (inner.take("flavor")) {
            preferences.setObject_forKey(inner.number("a hue", -1e6, 1e6), "flavor");
        } else {
            inner.fail(
                "preferences are: slot, gesture size, gesture timeout, make key, feedback, "
                "flavor");
        }
        inner.end();
        if (inner.opensBlock()) inner.fail("a preference opens no block");
    });
    return preferences;
}

std::string describeValue(const PropertyList& value) {
    std::string text;
    if (const NSArray* array = value.array()) {
        for (const PropertyList& element : *array) {
            const NSDictionary* row = element.dictionary();
            text += "\n      " + (row ? describeRow(*row) : describeScalar(element));
        }
        return array->empty() ? "an empty list" : text;
    }
    if (const NSDictionary* dictionary = value.dictionary()) {
        for (const auto& [key, element] : dictionary->entries()) {
            text += "\n      " + key + " = " + describeScalar(element);
        }
        return dictionary->entries().empty() ? "an empty dictionary" : text;
    }
    return describeScalar(value);
}

}  // namespace velmora
