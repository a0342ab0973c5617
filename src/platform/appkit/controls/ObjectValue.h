#pragma once

#include <string>
#include <variant>

#include "platform/foundation/files/PropertyList.h"
#include "platform/runtime/NSObject.h"

namespace velmora {

/// What a cell shows and a table's data source deals in: nothing, a value of a property list, or
/// an object such as a menu item.
using ObjectValue = std::variant<std::monostate, PropertyList, Id>;

/// Null unless it is a value of a property list.
const PropertyList* propertyListOf(const ObjectValue& value);

/// The object, or null.
Id objectOf(const ObjectValue& value);

/// As a person reads it: a text as it is, a number in decimal, true as 1 and false as 0; "" for
/// everything else.
std::string textOf(const ObjectValue& value);

}  // namespace velmora
