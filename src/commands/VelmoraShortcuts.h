#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "definitions/VelmoraCommon.h"
#include "platform/appkit/NSEvent.h"

namespace velmora {

struct NSNotification;

/// Gives menu items the key combinations that the user chose, and again whenever the application
/// adds or changes items; runs the item of a definition whose key or extra mouse button is pressed.
class VelmoraShortcuts final : public VelmoraCommon {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    void init() override;
    std::string componentName() override { return "Shortcuts"; }
    Class* uiClass() override;
    /// Has the menus filled first, so that the panel offers what is in them.
    void showPanel() override;

    /// Makes every definition pending and writes those whose items are there.
    void activateSettings() override;

    /// Writes the pending definitions whose menu items are found now, from the last to the first.
    /// The others stay pending. A nested call does nothing.
    void setKeys(const Id& sender);

    /// Gives the item the definition's combination and takes it away from the first other item of
    /// the main menu that has it. A definition without a key takes the item's own away; one of a
    /// mouse button does nothing.
    void setShortcut_inMenuItem(const VelmoraSetting& definition, NSMenuItem& item);
    void setShortcut_withModifiers_inMenuItem(const std::string& key, std::uint32_t modifiers,
                                              NSMenuItem& item);

    /// The first item of the main menu with that key equivalent and mask, or null.
    NSMenuItemRef findShortcut_withModifiers(const std::string& key, std::uint32_t modifiers);
    NSMenuItemRef findShortcut_withModifiers_inMenu(const std::string& key, std::uint32_t modifiers,
                                                    NSMenu& menu);

    /// An item was added or has changed: the first definition that names it becomes pending, the
    /// menu that it opens is filled, and what is pending is tried again.
    void menuChangedNotification(const NSNotification& notification);

    /// Runs the menu item of the first definition for the key or button of the event. True when
    /// it was to run.
    bool handleEvent(const NSEventRef& event);

private:
    NSMenuItemRef itemAtPath(const std::string& path);
    VelmoraSettingRef definitionNaming(const NSMenuItem& item);

    std::vector<VelmoraSettingRef> shortcutsToSet_;
    /// The generation of the menus in which what is pending was looked for last.
    std::optional<std::uint64_t> searched_;
    bool settingKeys_ = false;
};

}  // namespace velmora
