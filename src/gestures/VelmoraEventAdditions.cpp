#include "gestures/VelmoraEventAdditions.h"

#include "platform/port/Desktop.h"
#include "platform/runtime/Class.h"

namespace velmora {

ProcessWide<std::int32_t> VelmoraTargetWindowNum;

namespace {

const Category category(NSEvent::classObject(),
                        {methodFor<&velmoraSetDeltaX_deltaY>("velmoraSetDeltaX:deltaY:")});

/// In seconds, of whole milliseconds.
double upTime() {
    const auto now = std::chrono::duration_cast<std::chrono::milliseconds>(desktop().now()).count();
    return static_cast<double>(now) / 1000.0;
}

}  // namespace

NSEventRef velmoraScrollWheelEventWithDeltaX_deltaY(float deltaX, float deltaY) {
    NSEventRef event = NSEvent::
        otherEventWithType_location_modifierFlags_timestamp_windowNumber_context_subtype_data1_data2(
            NSApplicationDefined, {1, 1}, 0, upTime(), *VelmoraTargetWindowNum, nullptr, 0, 0, 0);
    velmoraSetDeltaX_deltaY(*event, deltaX, deltaY);
    return event;
}

void velmoraSetDeltaX_deltaY(NSEvent& event, float deltaX, float deltaY) {
    event.fields().type = NSScrollWheel;
    event.fields().deltaX = deltaX;
    event.fields().deltaY = deltaY;
    event.fields().deltaZ = 0;
}

}  // namespace velmora
