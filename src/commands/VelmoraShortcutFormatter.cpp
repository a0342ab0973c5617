#include "commands/VelmoraShortcutFormatter.h"

#include "commands/VelmoraTriggers.h"
#include "platform/appkit/NSEvent.h"
#include "platform/foundation/NSBundle.h"
#include "platform/foundation/files/Characters.h"
#include "platform/runtime/Class.h"

namespace velmora {

const std::array<const char*, 72> velmoraSpecialKeys{
    "Up",
    "Down",
    "Left",
    "Right",
    "F1",
    "F2",
    "F3",
    "F4",
    "F5",
    "F6",
    "F7",
    "F8",
    "F9",
    "F10",
    "F11",
    "F12",
    "F13",
    "F14",
    "F15",
    "F16",
    "F17",
    "F18",
    "F19",
    "F20",
    "F21",
    "F22",
    "F23",
    "F24",
    "F25",
    "F26",
    "F27",
    "F28",
    "F29",
    "F30",
    "F31",
    "F32",
    "F33",
    "F34",
    "F35",
    "Ins",
    "Del",
    "Home",
    "Begin",
    "End",
    "Page Up",
    "Page Down",
    "Print Screen",
    "Scroll Lock",
    "Pause",
    "SysReq",
    "Break",
    "Reset",
    "Stop",
    "Menu",
    "User",
    "System",
    "Print",
    "Clear Line",
    "Clear Display",
    "Insert Line",
    "Delete Line",
    "Insert Char",
    "Delete Char",
    "Prev",
    "Next",
    "Select",
    "Execute",
    "Undo",
    "Redo",
    "Find",
    "Help",
    "Mode Switch",
};

namespace {

constexpr char32_t firstSpecialKey = 0xF700;

/// The fixed names of ordinary characters, else those of the function keys, else null.
const char* nameOf(char32_t character) {
    switch (character) {
        case 0x03: return "Enter";
        case 0x09: return "Tab";
        case 0x0D: return "Return";
        case 0x1B: return "Esc";
        case 0x20: return "Space";
        case 0x7F: return "Delete";
        default: break;
    }
    const bool special =
        character >= firstSpecialKey && character < firstSpecialKey + velmoraSpecialKeys.size();
    return special ? velmoraSpecialKeys[character - firstSpecialKey] : nullptr;
}

/// As the key is called on this keyboard.
std::string spokenKey(const std::string& key) {
    const char32_t character = firstCharacter(key);
    switch (character) {
        case 0x0D: return localized("Return");
        case 0x20: return localized("Space");
        case 0x7F: return localized("Backspace");
        case 0xF700: return localized("Up arrow");
        case 0xF701: return localized("Down arrow");
        case 0xF702: return localized("Left arrow");
        case 0xF703: return localized("Right arrow");
        case 0xF727: return localized("Ins");
        case 0xF728: return localized("Del");
        case 0xF729: return localized("Home");
        case 0xF72B: return localized("End");
        case 0xF72C: return localized("Page Up");
        case 0xF72D: return localized("Page Down");
        default: break;
    }
    const char* name = nameOf(character);
    return name ? name : uppercaseString(key);
}

}  // namespace

Class& VelmoraShortcutFormatter::classObject() {
    static auto* object = new Class("VelmoraShortcutFormatter", &NSFormatter::classObject());
    return *object;
}

std::string VelmoraShortcutFormatter::stringForObjectValue(const PropertyList* value) const {
    const std::string* trigger = value ? value->string() : nullptr;
    if (!trigger || characterCount(*trigger) < 2) return {};
    const std::uint32_t flags = modifierFlagsForTrigger(*trigger);
    const std::string key = keyForTrigger(*trigger);
    std::string text;
    if (flags & NSControlKeyMask) text += "\u2303";
    if (flags & NSAlternateKeyMask) text += "\u2325";
    if ((flags & NSShiftKeyMask) || carriesShift(key)) text += "\u21E7";
    if (flags & NSCommandKeyMask) text += "\u2318";
    const char* name = nameOf(firstCharacter(key));
    return text + (name ? name : uppercaseString(key));
}

std::string VelmoraShortcutFormatter::spokenStringForObjectValue(const PropertyList* value) const {
    const std::string* trigger = value ? value->string() : nullptr;
    if (!trigger || characterCount(*trigger) < 2) return {};
    const std::uint32_t flags = modifierFlagsForTrigger(*trigger);
    const std::string key = keyForTrigger(*trigger);
    std::string text;
    if (flags & NSControlKeyMask) text += localized("Super") + '+';
    if (flags & NSCommandKeyMask) text += localized("Ctrl") + '+';
    if (flags & NSAlternateKeyMask) text += localized("Alt") + '+';
    if ((flags & NSShiftKeyMask) || carriesShift(key)) text += localized("Shift") + '+';
    if (isMouseTrigger(*trigger)) return text + localized("Mouse button") + ' ' + key.substr(1);
    return text + spokenKey(key);
}

}  // namespace velmora
