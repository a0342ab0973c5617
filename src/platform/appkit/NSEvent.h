#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/port/NSGeometry.h"
#include "platform/runtime/NSObject.h"

namespace velmora {

class NSWindow;

/// The platform's event types by their numbers.
enum NSEventType : std::uint32_t {
    NSLeftMouseDown = 1,
    NSLeftMouseUp = 2,
    NSRightMouseDown = 3,
    NSRightMouseUp = 4,
    NSMouseMoved = 5,
    NSLeftMouseDragged = 6,
    NSRightMouseDragged = 7,
    NSMouseEntered = 8,
    NSMouseExited = 9,
    NSKeyDown = 10,
    NSKeyUp = 11,
    NSFlagsChanged = 12,
    NSAppKitDefined = 13,
    NSSystemDefined = 14,
    NSApplicationDefined = 15,
    NSPeriodic = 16,
    NSCursorUpdate = 17,
    NSScrollWheel = 22,
    NSTabletPoint = 23,
    NSTabletProximity = 24,
    NSOtherMouseDown = 25,
    NSOtherMouseUp = 26,
    NSOtherMouseDragged = 27,
};

/// Modifier flags of an event.
enum : std::uint32_t {
    NSAlphaShiftKeyMask = 0x10000,
    NSShiftKeyMask = 0x20000,
    NSControlKeyMask = 0x40000,
    NSAlternateKeyMask = 0x80000,
    NSCommandKeyMask = 0x100000,
    NSNumericPadKeyMask = 0x200000,
    NSHelpKeyMask = 0x400000,
    NSFunctionKeyMask = 0x800000,
};

/// Matches events of every type.
inline constexpr std::uint32_t NSAnyEventMask = 0xFFFFFFFF;

/// Whether the type is one of the twelve of the mouse: 1 to 9 and 25 to 27.
constexpr bool isMouseEventType(std::uint32_t type) {
    return (type >= NSLeftMouseDown && type <= NSMouseExited) ||
           (type >= NSOtherMouseDown && type <= NSOtherMouseDragged);
}

/// One input event. Unchanging once it was posted. A desktop derives from it to keep what it needs
/// to hand the event to the host.
class NSEvent : public NSObject {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    struct Fields {
        std::uint32_t type = 0;
        /// In the window's base coordinates; on the screen without a window.
        NSPoint location;
        std::uint32_t modifierFlags = 0;
        double timestamp = 0;
        int windowNumber = 0;
        int eventNumber = 0;
        int clickCount = 0;
        float pressure = 0;
        /// 0 left, 1 right, 2 middle, and further ones.
        int buttonNumber = 0;
        std::string characters;
        std::string charactersIgnoringModifiers;
        std::uint16_t keyCode = 0;
        bool isARepeat = false;
        float deltaX = 0;
        float deltaY = 0;
        float deltaZ = 0;
    };

    explicit NSEvent(Fields fields) : fields_(std::move(fields)) {}
    virtual std::shared_ptr<NSEvent> copy() const { return std::make_shared<NSEvent>(fields_); }

    std::uint32_t type() const { return fields_.type; }
    NSPoint locationInWindow() const { return fields_.location; }
    std::uint32_t modifierFlags() const { return fields_.modifierFlags; }
    double timestamp() const { return fields_.timestamp; }
    int windowNumber() const { return fields_.windowNumber; }
    int eventNumber() const { return fields_.eventNumber; }
    int clickCount() const { return fields_.clickCount; }
    int buttonNumber() const { return fields_.buttonNumber; }
    float deltaX() const { return fields_.deltaX; }
    float deltaY() const { return fields_.deltaY; }
    float deltaZ() const { return fields_.deltaZ; }
    const Fields& fields() const { return fields_; }
    /// For whoever makes the event, before it goes anywhere.
    Fields& fields() { return fields_; }

    /// The pointer's place on the screen now.
    static NSPoint mouseLocation();

    static std::shared_ptr<NSEvent>
    mouseEventWithType_location_modifierFlags_timestamp_windowNumber_context_eventNumber_clickCount_pressure(
        std::uint32_t type, NSPoint location, std::uint32_t modifierFlags, double timestamp,
        int windowNumber, const void* context, int eventNumber, int clickCount, float pressure);

    static std::shared_ptr<NSEvent>
    otherEventWithType_location_modifierFlags_timestamp_windowNumber_context_subtype_data1_data2(
        std::uint32_t type, NSPoint location, std::uint32_t modifierFlags, double timestamp,
        int windowNumber, const void* context, int subtype, int data1, int data2);

private:
    Fields fields_;
};

using NSEventRef = std::shared_ptr<NSEvent>;

}  // namespace velmora
