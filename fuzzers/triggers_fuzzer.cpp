#include <cstdint>
#include <cstdlib>
#include <string>

#include "commands/VelmoraShortcutFormatter.h"
#include "commands/VelmoraTriggers.h"
#include "platform/appkit/NSEvent.h"
#include "platform/appkit/NSMenuItem.h"
#include "platform/foundation/files/Characters.h"
#include "platform/runtime/Selector.h"

namespace {

using namespace velmora;

void require(bool holds) {
    if (!holds) std::abort();
}

std::string shown(const std::string& trigger) {
    const PropertyList value = trigger;
    return VelmoraShortcutFormatter().stringForObjectValue(&value);
}

/// What a menu item is given from the trigger gives the same combination again.
void roundTripThroughItem(const std::string& trigger) {
    const auto item = NSMenuItem::initWithTitle_action_keyEquivalent("Item", Selector(), "");
    const std::string key = keyForTrigger(trigger);
    item->setKeyEquivalent_modifierMask(key, modifierFlagsForTrigger(trigger));
    const std::string again = triggerForMenuItem(*item);
    require(keyForTrigger(again) == key);
    require(modifierFlagsForTrigger(again) == modifierFlagsForTrigger(trigger));
    require(isMouseTrigger(trigger) == isMouseTrigger(again));
    // Digits and their order cannot be told from the display, but equal combinations look equal.
    if (characterCount(trigger) > 1) require(shown(trigger) == shown(again));
}

}  // namespace

/// Four bytes of modifier flags and a key text, which is also read as a trigger: any key and flags
/// make a trigger that reads back as they were, and any trigger is shown and read without harm.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 4) return 0;
    std::uint32_t flags = 0;
    for (int i = 0; i < 4; ++i) flags = flags << 8U | data[i];
    const std::string key(reinterpret_cast<const char*>(data) + 4, size - 4);

    const std::string trigger = triggerForKey_modifierFlags(key, flags);
    constexpr std::uint32_t kept =
        NSControlKeyMask | NSAlternateKeyMask | NSShiftKeyMask | NSCommandKeyMask;
    const std::uint32_t folded = carriesShift(key) ? kept & ~std::uint32_t{NSShiftKeyMask} : kept;
    require(keyForTrigger(trigger) == key);
    require(modifierFlagsForTrigger(trigger) == (flags & folded));
    require(triggerForKey_modifierFlags(key, modifierFlagsForTrigger(trigger)) == trigger);
    require(shown(trigger).empty() == key.empty());
    roundTripThroughItem(trigger);
    roundTripThroughItem(key);

    // Folding is the same for a text that has been folded.
    require(uppercaseString(uppercaseString(key)) == uppercaseString(key));
    require(lowercaseString(lowercaseString(key)) == lowercaseString(key));
    require(characterCount(uppercaseString(key)) == characterCount(key));

    const int button = static_cast<int>(flags % 100);
    const std::string buttonTrigger = triggerForKey_modifierFlags(keyForMouseButton(button), flags);
    require(isMouseTrigger(buttonTrigger));
    require(modifierFlagsForTrigger(buttonTrigger) == (flags & kept));
    return 0;
}
