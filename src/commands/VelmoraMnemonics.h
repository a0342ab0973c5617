#pragma once

#include <string>

#include "definitions/VelmoraCommon.h"

namespace velmora {

class NSTextField;
struct NSNotification;

/// Runs the menu item whose name the user types: the delegate of the mnemonic panel's text field.
/// As soon as the text is a name whose item is found, the panel's modal session ends with code 1;
/// the controller then has the item run.
class VelmoraMnemonics final : public VelmoraCommon {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    std::string componentName() override { return "Mnemonics"; }
    Class* uiClass() override;

    /// Forgets the item chosen before, whatever is found.
    VelmoraSettingRef findTrigger(const std::optional<std::string>& trigger) override;

    /// The text of the field that is the notification's object has changed.
    void controlTextDidChange(const NSNotification& notification);

    /// Ends the modal session on the cancel command; leaves all others to the field.
    bool control_textView_doCommandBySelector(NSTextField& control, const Id& textView,
                                              Selector command);

    /// Runs the chosen item, unless it has gone, and forgets it.
    void executeMnemonic();

private:
    NSMenuItemRef selectedMenuItem_;
};

}  // namespace velmora
