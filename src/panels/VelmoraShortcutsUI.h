#pragma once

#include "panels/VelmoraCommonUI.h"
#include "platform/appkit/NSEvent.h"

namespace velmora {

/// The panel in which shortcuts are defined. The selected row takes the combination that is
/// pressed; a combination that some menu item has is taken after the user has agreed. Captures are
/// written to the files at once, but are in force only after OK.
class VelmoraShortcutsUI final : public VelmoraCommonUI {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    void additionalInitialization() override;

    void otherMouseDown_inRow(const NSEventRef& event, int row);
    /// A null event clears the row's trigger. Always true.
    bool performKeyEquivalent_inRow(const NSEventRef& event, int row);
    void duplicateShortcutAlertSheetDidEnd_returnCode_contextInfo(NSPanel& sheet, int returnCode,
                                                                  const PropertyList& trigger);

    /// A chosen menu item brings its own key equivalent as the trigger to begin with.
    void tableView_setObjectValue_forTableColumn_row(NSTableView& table, const ObjectValue& value,
                                                     NSTableColumn& column, int row) override;

private:
    void setTrigger(const std::string& trigger, int row);
    void captured(const std::string& trigger, int row);
    void askAbout(const std::string& trigger, const NSMenuItem& owner);
};

}  // namespace velmora
