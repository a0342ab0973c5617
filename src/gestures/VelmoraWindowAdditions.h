#pragma once

#include "platform/appkit/NSWindow.h"

namespace velmora {

/// Which window, of this one and its drawers, holds the point where the gesture began; null when
/// none does. The message `velmoraCheckForHit` of every window.
NSWindowRef velmoraCheckForHit(NSWindow& window);

}  // namespace velmora
