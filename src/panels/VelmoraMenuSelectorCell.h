#pragma once

#include <string>

#include "platform/appkit/controls/NSPopUpButtonCell.h"

namespace velmora {

/// Offers a copy of the application's menu bar, as it stood when the cell was made. Every command
/// can be chosen, disabled or not; choosing one runs nothing.
class VelmoraMenuSelectorCell final : public NSPopUpButtonCell {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    void initTextCell_pullsDown(const std::string& title, bool pullsDown) override;

    /// Copies the menu bar.
    void updateMenu();
    /// A copy whose items are VelmoraMenuItem, each with the original as its represented object.
    static NSMenuRef cloneMenu(const NSMenu& menu);
    /// The action of the copied items.
    static void menuItemSelected(const Id& item);

    /// The item that was chosen last in any such cell, or nothing: one pop-up is open at a time.
    ObjectValue objectValue() const override;
    /// Shows the path: a menu item's own, or a text as it is.
    void setObjectValue(const ObjectValue& value) override;
};

}  // namespace velmora
