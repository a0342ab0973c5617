#include "platform/qt/base/ModifierKeys.h"

#include <algorithm>

#include "platform/appkit/NSEvent.h"

namespace velmora {

namespace {

/// NoModifier for keys that set none: Caps Lock, and AltGr, which selects characters.
Qt::KeyboardModifier modifierOfKey(int key) {
    switch (key) {
        case Qt::Key_Shift: return Qt::ShiftModifier;
        case Qt::Key_Control: return Qt::ControlModifier;
        case Qt::Key_Alt: return Qt::AltModifier;
        case Qt::Key_Meta:
        case Qt::Key_Super_L:
        case Qt::Key_Super_R: return Qt::MetaModifier;
        default: return Qt::NoModifier;
    }
}

}  // namespace

std::uint32_t flagsForModifiers(Qt::KeyboardModifiers modifiers) {
    std::uint32_t flags = 0;
    if (modifiers & Qt::ShiftModifier) flags |= NSShiftKeyMask;
    if (modifiers & Qt::ControlModifier) flags |= NSCommandKeyMask;
    if (modifiers & Qt::AltModifier) flags |= NSAlternateKeyMask;
    if (modifiers & Qt::MetaModifier) flags |= NSControlKeyMask;
    if (modifiers & Qt::KeypadModifier) flags |= NSNumericPadKeyMask;
    return flags;
}

bool ModifierKeys::isModifierKey(int key) {
    return modifierOfKey(key) != Qt::NoModifier || key == Qt::Key_AltGr || key == Qt::Key_CapsLock;
}

std::uint32_t ModifierKeys::flagsAfter(const QKeyEvent& event) {
    // Not QKeyEvent's own, which turns the key's modifier over without regard for its twin.
    Qt::KeyboardModifiers modifiers = event.QInputEvent::modifiers();
    // Keys that went up while another application had the keyboard.
    std::erase_if(down_, [&](const Down& key) { return !(modifiers & key.modifier); });

    const Qt::KeyboardModifier modifier = modifierOfKey(event.key());
    if (modifier == Qt::NoModifier) return flagsForModifiers(modifiers);
    std::erase_if(down_, [&](const Down& key) { return key.scanCode == event.nativeScanCode(); });
    if (event.type() != QEvent::KeyRelease) {
        down_.push_back({modifier, event.nativeScanCode()});
        modifiers |= modifier;
    } else {
        const bool twinIsDown = std::any_of(
            down_.begin(), down_.end(), [&](const Down& key) { return key.modifier == modifier; });
        modifiers.setFlag(modifier, twinIsDown);
    }
    return flagsForModifiers(modifiers);
}

}  // namespace velmora
