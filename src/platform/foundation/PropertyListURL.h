#pragma once

#include <optional>
#include <string>

#include "platform/foundation/PropertyList.h"

namespace velmora {

/// The root dictionary of the property list at a web address, fetched by a child process (curl).
/// Blocks until it is there, for ten seconds at the most. Nothing when it cannot be fetched or has
/// another root. `scratchFile` is where it lies meanwhile; the file is removed.
std::optional<NSDictionary> dictionaryWithContentsOfURL(const std::string& address,
                                                        const std::string& scratchFile);

}  // namespace velmora
