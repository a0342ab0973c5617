#pragma once

#include <array>
#include <cstdint>

#include "platform/runtime/ProcessWide.h"
#include "platform/runtime/Selector.h"
#include "product/Limits.h"

namespace velmora {

/// The activation entries: the enabled, legal slots in slot order, one row across three tables. A
/// null action ends them. VelmoraDefaults writes them, the event router reads them.
extern ProcessWide<std::array<Selector, VelmoraSlotCount + 1>> VelmoraActions;
/// Modifier flags of an event, of the five keys only.
extern ProcessWide<std::array<std::uint32_t, VelmoraSlotCount>> VelmoraModifiers;
/// Button number of an event; -1 for an entry that modifier keys alone activate.
extern ProcessWide<std::array<std::int32_t, VelmoraSlotCount>> VelmoraMouseButton;

/// The entry that the router's last scan matched, or the end of the entries. The action that the
/// router sends reads it.
extern ProcessWide<std::int32_t> VelmoraIndex;

/// The modifier flags that count: Shift, Control, Option, Command, Function.
inline constexpr std::uint32_t VelmoraModifierMask = 0x9E0000;

/// The gesture size in pixels, squared.
extern ProcessWide<std::int32_t> VelmoraGestureSize;
/// Milliseconds.
extern ProcessWide<std::int32_t> VelmoraGestureTimeout;
extern ProcessWide<bool> VelmoraGestureMakesKey;
extern ProcessWide<bool> VelmoraGesturesDrawFeedback;

}  // namespace velmora
