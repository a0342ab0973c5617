#include "preferences/VelmoraActivation.h"

namespace velmora {

ProcessWide<std::array<Selector, VelmoraSlotCount + 1>> VelmoraActions;
ProcessWide<std::array<std::uint32_t, VelmoraSlotCount>> VelmoraModifiers;
ProcessWide<std::array<std::int32_t, VelmoraSlotCount>> VelmoraMouseButton;
ProcessWide<std::int32_t> VelmoraIndex;
ProcessWide<std::int32_t> VelmoraGestureSize;
ProcessWide<std::int32_t> VelmoraGestureTimeout;
ProcessWide<bool> VelmoraGestureMakesKey;
ProcessWide<bool> VelmoraGesturesDrawFeedback;

}  // namespace velmora
