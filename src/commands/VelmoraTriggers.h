#pragma once

#include <cstdint>
#include <string>

namespace velmora {

class NSMenuItem;

/// The trigger string of a shortcut: one upper-case hexadecimal digit for the modifiers (1 Control,
/// 2 Option, 4 Shift, 8 Command), then the key text: what the key types, or "m" and a number for an
/// extra mouse button, or nothing for no shortcut. Triggers are compared as strings, so every one
/// is made and read here.

/// The trigger of a key or button that was pressed. An upper-case letter carries the Shift itself.
std::string triggerForKey_modifierFlags(const std::string& key, std::uint32_t flags);

/// The trigger of the key equivalent that a menu item has.
std::string triggerForMenuItem(const NSMenuItem& item);

/// The modifier mask for a menu item. A first character that is no upper-case digit stands for no
/// modifiers.
std::uint32_t modifierFlagsForTrigger(const std::string& trigger);

/// What follows the digit.
std::string keyForTrigger(const std::string& trigger);

/// Whether it is an extra mouse button, which no menu item can have.
bool isMouseTrigger(const std::string& trigger);

/// The key text of the button with that number (2 for the middle one).
std::string keyForMouseButton(int buttonNumber);

/// Whether the key text has letters and all of them are in upper case.
bool carriesShift(const std::string& key);

}  // namespace velmora
