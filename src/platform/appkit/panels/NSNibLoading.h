#pragma once

#include <string>

#include "platform/runtime/NSObject.h"

namespace velmora {

class NSBundle;

/// Loads interface/NAME.plist of the bundle and connects its outlets to the owner. False, with a
/// line in the log that names the file and the place, when it is missing or broken; the owner is
/// then untouched.
bool loadNibNamed_owner(const NSBundle& bundle, const std::string& name, const Id& owner);

}  // namespace velmora
