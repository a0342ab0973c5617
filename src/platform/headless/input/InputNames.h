#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace velmora {

class NSEvent;

/// The number of a mouse button by its name: left, right, middle, button3 and so on up to button31.
std::optional<int> mouseButtonNamed(std::string_view name);
std::string nameOfMouseButton(int button);

/// The flag of a modifier key by its name: shift, control, option, command, function or capslock.
std::optional<std::uint32_t> modifierNamed(std::string_view name);

/// The names of the modifiers among the flags, joined by "+"; "none" without one.
std::string namesOfModifiers(std::uint32_t flags);

/// What a key sends.
struct Key {
    std::string characters;
    /// Flags that the platform sets with this key whatever is held.
    std::uint32_t flags = 0;
};

/// The key of that name: one character, or space, return, tab, escape, delete, forwarddelete, left,
/// right, up, down, home, end, pageup, pagedown or f1 to f12.
std::optional<Key> keyNamed(std::string_view name);

/// An event in words: "right down", "key down a", "flags control+shift", "moved".
std::string describeEvent(const NSEvent& event);

}  // namespace velmora
