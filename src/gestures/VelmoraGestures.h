#pragma once

#include <memory>
#include <string>

#include "definitions/VelmoraCommon.h"

namespace velmora {

/// Runs the menu command that is bound to a finished gesture: an item of the application's menus
/// or, for a path that begins with "Context Menu: ", of the context menu of the view under the
/// gesture's start.
class VelmoraGestures final : public VelmoraCommon {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    /// The component of this process: the one initialised last.
    static std::shared_ptr<VelmoraGestures> activeInstance();

    void init() override;
    std::string componentName() override { return "Gestures"; }
    Class* uiClass() override;

    /// While it is set, finished gestures go to the panel instead of running anything.
    void setTraining(bool training) { training_ = training; }

    /// Runs the first definition of the gesture whose item is there and, in the main menu, enabled;
    /// beeps without one.
    /// With makeKey the window under the gesture's start becomes key before an item of the
    /// application's menus runs.
    void processGesture_makeKey(const std::string& gesture, bool makeKey);

    /// The definition's item inside that menu, by its path only.
    NSMenuItemRef findMenuItem_inMenu(const VelmoraSetting& definition, NSMenu& menu);

    /// Makes the window under the gesture's start key, unless that is the key window or one of its
    /// drawers, or there is no key window.
    void checkForKeyWindow();

private:
    bool runMenuItem(const VelmoraSetting& definition, bool makeKey);
    bool runContextMenuItem(const VelmoraSetting& definition);

    bool training_ = false;
};

}  // namespace velmora
