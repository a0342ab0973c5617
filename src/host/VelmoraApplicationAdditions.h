#pragma once

#include <cstdint>

#include "platform/appkit/NSApplication.h"
#include "platform/runtime/ProcessWide.h"

namespace velmora {

/// A copy of the mouse event that the last fetch returned; null when that was no mouse event, or
/// none.
extern ProcessWide<NSEventRef> DravikRealEvent;

/// The event router: exchanged with `sendEvent:`, so that every event of the host passes it. Hands
/// key-downs with Command or Function, and presses of extra buttons, to the shortcuts; presses and
/// modifier changes that match an activation entry to the mouse handling; and all others on to the
/// host. A key-down for which a command ran is not passed on; such a press is.
void velmoraSendEvent(NSApplication& application, const NSEventRef& event);

/// The fetch hook: exchanged with `nextEventMatchingMask:untilDate:inMode:dequeue:`. Keeps a copy
/// of each mouse event as the queue delivered it.
NSEventRef dravikNextEventMatchingMask_untilDate_inMode_dequeue(NSApplication& application,
                                                                std::uint32_t mask, Time until,
                                                                RunLoopMode mode, bool dequeue);

/// Exchanges the router, the fetch hook and the menu hook with the operations of the platform that
/// they stand in front of. Once a process: a second time takes them away again.
void placeHooks();

/// Hands an event to the host's own dispatch; null is nothing to do.
void passEventOn(const NSEventRef& event);

}  // namespace velmora
