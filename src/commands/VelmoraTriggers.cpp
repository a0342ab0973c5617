#include "commands/VelmoraTriggers.h"

#include <array>

#include "platform/appkit/NSEvent.h"
#include "platform/appkit/NSMenuItem.h"
#include "platform/foundation/files/Characters.h"

namespace velmora {

namespace {

/// The event's flag for each bit of the digit.
constexpr std::array<std::uint32_t, 4> flagsOfBits{NSControlKeyMask, NSAlternateKeyMask,
                                                   NSShiftKeyMask, NSCommandKeyMask};

std::string encoded(const std::string& key, std::uint32_t flags) {
    std::size_t code = 0;
    for (std::size_t bit = 0; bit < flagsOfBits.size(); ++bit) {
        if (flags & flagsOfBits[bit]) code |= std::size_t{1} << bit;
    }
    return "0123456789ABCDEF"[code] + key;
}

unsigned codeOf(const std::string& trigger) {
    const char digit = trigger.empty() ? '0' : trigger[0];
    if (digit >= '0' && digit <= '9') return static_cast<unsigned>(digit - '0');
    return digit >= 'A' && digit <= 'F' ? static_cast<unsigned>(digit - 'A' + 10) : 0;
}

}  // namespace

std::string triggerForKey_modifierFlags(const std::string& key, std::uint32_t flags) {
    if (carriesShift(key)) flags &= ~std::uint32_t{NSShiftKeyMask};
    return encoded(key, flags);
}

std::string triggerForMenuItem(const NSMenuItem& item) {
    return encoded(item.keyEquivalent(), item.keyEquivalentModifierMask());
}

std::uint32_t modifierFlagsForTrigger(const std::string& trigger) {
    const unsigned code = codeOf(trigger);
    std::uint32_t flags = 0;
    for (std::size_t bit = 0; bit < flagsOfBits.size(); ++bit) {
        if (code >> bit & 1U) flags |= flagsOfBits[bit];
    }
    return flags;
}

std::string keyForTrigger(const std::string& trigger) {
    return trigger.substr(firstCharacterLength(trigger));
}

bool isMouseTrigger(const std::string& trigger) {
    const std::size_t key = firstCharacterLength(trigger);
    return trigger.size() > key + 1 && trigger[key] == 'm' && trigger[key + 1] >= '0' &&
           trigger[key + 1] <= '9';
}

std::string keyForMouseButton(int buttonNumber) {
    return "m" + std::to_string(buttonNumber + 1);
}

bool carriesShift(const std::string& key) {
    const std::string upper = uppercaseString(key);
    return upper == key && upper != lowercaseString(key);
}

}  // namespace velmora
