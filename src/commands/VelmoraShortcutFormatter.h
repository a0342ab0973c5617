#pragma once

#include <array>
#include <string>

#include "platform/appkit/controls/NSFormatter.h"

namespace velmora {

/// The names of the function keys, from the character U+F700 on.
extern const std::array<const char*, 72> velmoraSpecialKeys;

/// Shows a trigger string as a person reads it: the signs of the modifiers, then the key's name.
class VelmoraShortcutFormatter final : public NSFormatter {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    /// "" for no value, for one that is no string, and for a trigger without a key.
    std::string stringForObjectValue(const PropertyList* value) const override;

    /// The keys as they are called on this keyboard, in the user's language: "Ctrl+Alt+J".
    std::string spokenStringForObjectValue(const PropertyList* value) const override;
};

}  // namespace velmora
