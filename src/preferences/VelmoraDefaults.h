#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/appkit/NSMenuItem.h"
#include "platform/foundation/files/PropertyList.h"
#include "platform/port/FileSystem.h"
#include "platform/runtime/NSObject.h"
#include "preferences/VelmoraActivation.h"

namespace velmora {

/// The preferences of all applications: ten activation slots, the gesture settings and the hue.
/// Each change is written to the file and in force at once; a change that another process wrote is
/// read when the application becomes active.
///
/// What a slot does is fixed by its index: 0 and 1 gestures, 2 and 3 vertical scrolling, 4 and 5
/// horizontal, 6 and 7 both, 8 and 9 the jog dial. An index outside 0 to 9 reads as a slot that is
/// off and is not stored.
class VelmoraDefaults final : public NSObject {
public:
    /// What the preferences set going in rooms that are built on this one.
    struct Callbacks {
        /// Creates the mouse handling and activates it.
        std::function<void()> activateMouseHandling = [] {};
        /// Draws the trace in this hue from now on.
        std::function<void(double hue)> setTraceHue = [](double) {};
    };

    explicit VelmoraDefaults(Callbacks callbacks) : callbacks_(std::move(callbacks)) {}

    static Class& classObject();
    Class& isa() const override { return classObject(); }

    /// Reads the file, builds the tables, then creates and activates the mouse handling. The item
    /// is the suite's one in the application's first menu, not owned; null without one.
    void initForMenuItem(const NSMenuItemRef& item);

    /// A further item that shows the picture in the hue, as the first one does; not owned.
    void addMenuItem(const NSMenuItemRef& item);

    /// Reads the file if it changed since the last reading. True when it was read, also when it
    /// could not be parsed: its fields then keep their values, as those of absent keys do. False
    /// when the state of the machine is in the way; it is then read the next time.
    bool readDefaults();
    /// Writes all fields. The outcome is not checked.
    void writeDefaults();
    /// readDefaults, and when it did, updateDefaults; an open panel then shows the new values.
    void checkDefaults();
    void saveAndUpdateDefaults();
    /// Rebuilds the activation tables and passes the hue on.
    void updateDefaults();
    std::string globalDefaultsFileName();

    /// Opens the preferences panel, whose controller is made on the first call and kept.
    void showPanel();

    /// Compact masks: 1 Shift, 2 Control, 4 Option, 8 Command, 16 Function.
    std::uint32_t modifierForIndex(int index) const;
    void setModifier_forIndex(std::uint32_t modifier, int index);
    /// -1 none, 0 left, 1 right, 2 and up further ones.
    std::int32_t mouseButtonForIndex(int index) const;
    void setMouseButton_forIndex(std::int32_t button, int index);
    bool isEnabledForIndex(int index) const;
    void setEnabled_forIndex(bool enabled, int index);
    /// Whether the slot's combination may be used: see the rules in the source.
    bool isSettingLegalAtIndex(int index) const;

    /// Pixels.
    std::int32_t gestureSize() const { return gestureSize_; }
    void setGestureSize(std::int32_t size);
    /// Milliseconds.
    std::int32_t gestureTimeout() const { return gestureTimeout_; }
    void setGestureTimeout(std::int32_t timeout);
    bool makeGestureWindowKey() const { return makeGestureWindowKey_; }
    void setMakeGestureWindowKey(bool makesKey);
    bool drawsFeedback() const { return drawsFeedback_; }
    void setDrawsFeedback(bool draws);
    /// A hue: 0 up to 60 is one turn of the colour circle.
    double flavor() const { return flavor_; }
    void setFlavor(double flavor);

private:
    struct Slot {
        std::uint32_t modifiers = 0;
        std::int32_t mouseButton = -1;
        bool isEnabled = false;
    };
    const Slot& slot(int index) const;
    Slot* slotToChange(int index);
    void readFrom(const NSDictionary& dictionary);
    NSDictionary dictionary() const;

    Callbacks callbacks_;
    std::array<Slot, VelmoraSlotCount> slots_;
    std::int32_t gestureSize_ = 15;
    std::int32_t gestureTimeout_ = 500;
    bool makeGestureWindowKey_ = true;
    bool drawsFeedback_ = true;
    double flavor_ = 0.0;
    std::optional<NSDate> timeStamp_;
    Id ui_;
    std::vector<std::weak_ptr<NSMenuItem>> vmMenu_;
};

}  // namespace velmora
