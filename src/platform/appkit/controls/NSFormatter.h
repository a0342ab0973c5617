#pragma once

#include <string>

#include "platform/foundation/files/PropertyList.h"
#include "platform/runtime/NSObject.h"

namespace velmora {

/// Turns a cell's value into what the cell shows.
class NSFormatter : public NSObject {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    /// `value` is null for none.
    virtual std::string stringForObjectValue(const PropertyList* value) const = 0;

    /// As above, in words: for tool tips and screen readers, where signs are shown that not
    /// everybody knows.
    virtual std::string spokenStringForObjectValue(const PropertyList* value) const {
        return stringForObjectValue(value);
    }
};

using NSFormatterRef = std::shared_ptr<const NSFormatter>;

}  // namespace velmora
