#pragma once

#include <optional>
#include <string>

#include "platform/foundation/files/PropertyList.h"

namespace velmora {

/// The root dictionary of the property list at a web address, which may have a mebibyte. Blocks as
/// Desktop::fetch does. Nothing when it cannot be fetched or has another root.
std::optional<NSDictionary> dictionaryWithContentsOfURL(const std::string& address);

}  // namespace velmora
