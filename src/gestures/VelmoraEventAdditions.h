#pragma once

#include "platform/appkit/NSEvent.h"
#include "platform/runtime/ProcessWide.h"

namespace velmora {

/// The window that the scroll events which are made are for; 0 for none.
extern ProcessWide<std::int32_t> VelmoraTargetWindowNum;

/// A scroll-wheel event for that window, of now.
NSEventRef velmoraScrollWheelEventWithDeltaX_deltaY(float deltaX, float deltaY);

/// Makes it a scroll-wheel event.
void velmoraSetDeltaX_deltaY(NSEvent& event, float deltaX, float deltaY);

}  // namespace velmora
