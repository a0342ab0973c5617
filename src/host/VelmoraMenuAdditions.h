#pragma once

#include "platform/appkit/NSMenu.h"

namespace velmora {

/// The menu hook: exchanged with `performActionForItemAtIndex:`, so that every command that is run
/// passes it. Offers the item to an open gestures panel; when that does not take it, runs it by the
/// platform's own implementation.
void velmoraPerformActionForItemAtIndex(NSMenu& menu, int index);

}  // namespace velmora
