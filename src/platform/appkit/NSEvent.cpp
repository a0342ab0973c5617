#include "platform/appkit/NSEvent.h"

#include "platform/port/CGDirectDisplay.h"
#include "platform/port/Desktop.h"
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

NSEventRef NSEvent::
    otherEventWithType_location_modifierFlags_timestamp_windowNumber_context_subtype_data1_data2(
        std::uint32_t type, NSPoint location, std::uint32_t modifierFlags, double timestamp,
        int windowNumber, const void* /*context*/, int /*subtype*/, int /*data1*/, int /*data2*/) {
    Fields fields;
    fields.type = type;
    fields.location = location;
    fields.modifierFlags = modifierFlags;
    fields.timestamp = timestamp;
    fields.windowNumber = windowNumber;
    return std::make_shared<NSEvent>(std::move(fields));
}

CGMouseDelta CGGetLastMouseDelta() {
    return desktop().lastMouseDelta();
}

void CGAssociateMouseAndMouseCursorPosition(bool connected) {
    desktop().associateMouseAndPointer(connected);
}

}  // namespace velmora
