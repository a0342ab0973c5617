#pragma once

#include "platform/appkit/NSMenu.h"

namespace velmora {

/// The menu hook: exchanged with `performActionForItemAtIndex:`, so that every command that is run
/// passes it. Runs the item by the platform's own implementation.
void velmoraPerformActionForItemAtIndex(NSMenu& menu, int index);

}  // namespace velmora
