#pragma once

#include <QKeyEvent>
#include <QKeySequence>
#include <cstdint>
#include <string>

#include "platform/appkit/NSEvent.h"

namespace velmora {

/// Whether the platform has a character of its own, from U+F700 on, for the key.
bool isFunctionKey(int key);

/// What the platform says for the pressed key without its modifiers except Shift, as the keyboard's
/// layout gives it: a character, for a function key one from U+F700 on. UTF-8; may be empty.
std::string charactersForKey(const QKeyEvent& event);

/// What an event of the platform says of the key, other than a modifier key, that was pressed or
/// released; all but its window and number.
NSEvent::Fields fieldsForKey(const QKeyEvent& event);

/// A key of a menu item with its modifiers, as the platform writes them: an upper-case letter
/// stands for itself with Shift. Without a key there is no shortcut, whatever the modifiers.
struct KeyEquivalent {
    std::string key;
    std::uint32_t modifiers = 0;

    bool operator==(const KeyEquivalent& other) const {
        return key == other.key && (key.empty() || modifiers == other.modifiers);
    }
};

/// What a menu item has whose first shortcut this is. One of several keys in a row, which no item
/// of the platform has, is given as the toolkit writes it, so that it equals no single key.
KeyEquivalent keyEquivalentFor(const QKeySequence& sequence);

/// The other way round; empty for a key that the toolkit does not know.
QKeySequence sequenceFor(const KeyEquivalent& equivalent);

}  // namespace velmora
