#pragma once

#include <QKeyEvent>
#include <cstdint>
#include <vector>

namespace velmora {

/// The platform's flags for the toolkit's modifiers: Ctrl is Command, Alt is Option, Super is
/// Control; the numeric pad's keys carry their own flag.
std::uint32_t flagsForModifiers(Qt::KeyboardModifiers modifiers);

/// Which modifier keys are down, as told by their presses and releases. A key event carries the
/// modifiers from before it, and each modifier has two keys, so that what holds after a release
/// cannot be read off one event.
class ModifierKeys {
public:
    static bool isModifierKey(int key);

    /// The flags once this press or release of a modifier key has taken effect. To be asked exactly
    /// once for each.
    std::uint32_t flagsAfter(const QKeyEvent& event);

private:
    struct Down {
        Qt::KeyboardModifier modifier;
        quint32 scanCode;
    };
    std::vector<Down> down_;
};

}  // namespace velmora
