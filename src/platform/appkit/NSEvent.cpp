#include "platform/appkit/NSEvent.h"

#include "platform/Desktop.h"
#include "platform/runtime/Class.h"

namespace velmora {

Class& NSEvent::classObject() {
    static auto* object = new Class("NSEvent", &NSObject::classObject());
    return *object;
}

NSPoint NSEvent::mouseLocation() {
    return desktop().mouseLocation();
}

NSEventRef NSEvent::
    mouseEventWithType_location_modifierFlags_timestamp_windowNumber_context_eventNumber_clickCount_pressure(
        std::uint32_t type, NSPoint location, std::uint32_t modifierFlags, double timestamp,
        int windowNumber, const void* /*context*/, int eventNumber, int clickCount,
        float pressure) {
    Fields fields;
    fields.type = type;
    fields.location = location;
    fields.modifierFlags = modifierFlags;
    fields.timestamp = timestamp;
    fields.windowNumber = windowNumber;
    fields.eventNumber = eventNumber;
    fields.clickCount = clickCount;
    fields.pressure = pressure;
    return std::make_shared<NSEvent>(std::move(fields));
}

}  // namespace velmora
