#include "platform/headless/input/InputNames.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <sstream>

#include "platform/appkit/NSEvent.h"
#include "platform/foundation/files/Characters.h"

namespace velmora {

namespace {

constexpr std::array<std::string_view, 3> buttonNames = {"left", "right", "middle"};
constexpr std::string_view furtherButton = "button";

struct Modifier {
    std::string_view name;
    std::uint32_t flag;
};
constexpr std::array<Modifier, 6> modifiers = {{{"shift", NSShiftKeyMask},
                                                {"control", NSControlKeyMask},
                                                {"option", NSAlternateKeyMask},
                                                {"command", NSCommandKeyMask},
                                                {"function", NSFunctionKeyMask},
                                                {"capslock", NSAlphaShiftKeyMask}}};

struct NamedKey {
    std::string_view name;
    const char* characters;
    std::uint32_t flags;
};
// The keys without a character of their own send one of the platform's private ones, from U+F700.
constexpr std::array<NamedKey, 26> namedKeys = {{
    {"space", " ", 0},
    {"return", "\r", 0},
    {"tab", "\t", 0},
    {"escape", "\x1B", 0},
    {"delete", "\x7F", 0},
    {"up", "\uF700", NSFunctionKeyMask | NSNumericPadKeyMask},
    {"down", "\uF701", NSFunctionKeyMask | NSNumericPadKeyMask},
    {"left", "\uF702", NSFunctionKeyMask | NSNumericPadKeyMask},
    {"right", "\uF703", NSFunctionKeyMask | NSNumericPadKeyMask},
    {"f1", "\uF704", NSFunctionKeyMask},
    {"f2", "\uF705", NSFunctionKeyMask},
    {"f3", "\uF706", NSFunctionKeyMask},
    {"f4", "\uF707", NSFunctionKeyMask},
    {"f5", "\uF708", NSFunctionKeyMask},
    {"f6", "\uF709", NSFunctionKeyMask},
    {"f7", "\uF70A", NSFunctionKeyMask},
    {"f8", "\uF70B", NSFunctionKeyMask},
    {"f9", "\uF70C", NSFunctionKeyMask},
    {"f10", "\uF70D", NSFunctionKeyMask},
    {"f11", "\uF70E", NSFunctionKeyMask},
    {"f12", "\uF70F", NSFunctionKeyMask},
    {"forwarddelete", "\uF728", NSFunctionKeyMask},
    {"home", "\uF729", NSFunctionKeyMask},
    {"end", "\uF72B", NSFunctionKeyMask},
    {"pageup", "\uF72C", NSFunctionKeyMask},
    {"pagedown", "\uF72D", NSFunctionKeyMask},
}};

std::string nameOfKey(const std::string& characters) {
    for (const NamedKey& key : namedKeys) {
        if (characters == key.characters) return std::string(key.name);
    }
    return characters;
}

}  // namespace

std::optional<int> mouseButtonNamed(std::string_view name) {
    for (std::size_t i = 0; i < buttonNames.size(); ++i) {
        if (name == buttonNames[i]) return static_cast<int>(i);
    }
    if (!name.starts_with(furtherButton)) return std::nullopt;
    const std::string_view digits = name.substr(furtherButton.size());
    int number = -1;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (error != std::errc() || end != digits.data() + digits.size()) return std::nullopt;
    if (number < 3 || number > 31) return std::nullopt;
    return number;
}

std::string nameOfMouseButton(int button) {
    if (button >= 0 && button < 3)
        return std::string(buttonNames[static_cast<std::size_t>(button)]);
    return std::string(furtherButton) + std::to_string(button);
}

std::optional<std::uint32_t> modifierNamed(std::string_view name) {
    for (const Modifier& modifier : modifiers) {
        if (name == modifier.name) return modifier.flag;
    }
    return std::nullopt;
}

std::string namesOfModifiers(std::uint32_t flags) {
    std::string names;
    for (const Modifier& modifier : modifiers) {
        if ((flags & modifier.flag) == 0) continue;
        if (!names.empty()) names += '+';
        names += modifier.name;
    }
    return names.empty() ? "none" : names;
}

std::optional<Key> keyNamed(std::string_view name) {
    for (const NamedKey& key : namedKeys) {
        if (name == key.name) return Key{key.characters, key.flags};
    }
    if (characterCount(name) != 1) return std::nullopt;
    return Key{std::string(name), 0};
}

std::string describeEvent(const NSEvent& event) {
    const auto button = [&](const char* what) {
        return nameOfMouseButton(event.buttonNumber()) + what;
    };
    switch (event.type()) {
        case NSLeftMouseDown:
        case NSRightMouseDown:
        case NSOtherMouseDown: return button(" down");
        case NSLeftMouseUp:
        case NSRightMouseUp:
        case NSOtherMouseUp: return button(" up");
        case NSLeftMouseDragged:
        case NSRightMouseDragged:
        case NSOtherMouseDragged: return button(" dragged");
        case NSMouseMoved: return "moved";
        case NSKeyDown: return "key down " + nameOfKey(event.fields().charactersIgnoringModifiers);
        case NSKeyUp: return "key up " + nameOfKey(event.fields().charactersIgnoringModifiers);
        case NSFlagsChanged: return "flags " + namesOfModifiers(event.modifierFlags());
        case NSScrollWheel: {
            std::ostringstream text;
            text << "scroll " << event.fields().deltaX << ' ' << event.fields().deltaY;
            return text.str();
        }
        default: return "event " + std::to_string(event.type());
    }
}

}  // namespace velmora
