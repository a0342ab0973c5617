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

    /// Writes the pending definitions whose menu items are found now. Of several with one
    /// combination the first whose item is there has it, and the others wait. A nested call does
    /// nothing, and neither does one when nothing has changed since the last.
    void setKeys(const Id& sender);

    /// Gives the item the definition's combination and takes it away from every other item of the
    /// main menu. A definition without a key takes the item's own away; one of a mouse button does
    /// nothing.
    void setShortcut_inMenuItem(const VelmoraSetting& definition, NSMenuItem& item);
    void setShortcut_withModifiers_inMenuItem(const std::string& key, std::uint32_t modifiers,
                                              NSMenuItem& item);

    /// The first item of the main menu with that key equivalent and mask, or null.
    NSMenuItemRef findShortcut_withModifiers(const std::string& key, std::uint32_t modifiers);
    NSMenuItemRef findShortcut_withModifiers_inMenu(const std::string& key, std::uint32_t modifiers,
                                                    NSMenu& menu);

    /// An item was added or has changed: one that a definition names gets its combination, and one
    /// that carries another's loses it. Definitions that still wait are tried again.
    void menuChangedNotification(const NSNotification& notification);

    /// Runs the menu item of the first definition for the key or button of the event. True when it
    /// ran.
    bool handleEvent(const NSEventRef& event);

private:
    NSMenuItemRef itemOf(const VelmoraSetting& definition);
    NSMenuItemRef itemAtPath(const std::string& path);
    VelmoraSettingRef definitionNaming(const NSMenuItem& item);
    bool waitsForEarlier(const VelmoraSetting& definition, const NSMenuItem& item);
    void itemChanged(const NSMenuItem& item);
    void leavesChanged(const NSMenu& menu);
    void leafChanged(const NSMenuItem& item);
    void addPending(const VelmoraSettingRef& definition);

    std::vector<VelmoraSettingRef> shortcutsToSet_;
    /// The generation of the menus that were searched last for what is pending.
    std::optional<std::uint64_t> searched_;
    bool settingKeys_ = false;
    bool fillingMenus_ = false;
};

}  // namespace velmora
