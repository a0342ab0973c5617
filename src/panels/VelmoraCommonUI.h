#pragma once

#include <memory>
#include <vector>

#include "definitions/VelmoraCommon.h"
#include "panels/VelmoraTableView.h"
#include "platform/appkit/controls/NSButton.h"
#include "platform/appkit/controls/NSTableView.h"
#include "platform/appkit/panels/NSContentDrawer.h"
#include "platform/appkit/panels/NSPanel.h"

namespace velmora {

struct NSNotification;

/// The controller of a component's management panel: a table of the definitions, a row each. Edits
/// go into the component's own list; OK saves and activates them, and any other way of closing the
/// panel has the component bring its backup back. The component owns the controller.
///
/// The columns' identifiers are the keys of the definitions.
class VelmoraCommonUI : public NSObject {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    /// Loads the panel. Without its interface file there is none, and nothing is shown.
    virtual void initWithSettings_delegate(const std::shared_ptr<VelmoraSettings>& settings,
                                           const std::shared_ptr<VelmoraCommon>& delegate);
    /// What a derived panel does to the loaded one.
    virtual void additionalInitialization() {}

    void show();
    void updateDisplay();

    // Actions

    /// Adds a row and selects it. Without a sender it gets the first free name.
    virtual void addDefinition(const Id& sender);
    /// Deletes the selected rows and selects the one that has taken the place of the first.
    void deleteDefinition(const Id& sender);
    void ok(const Id& sender);

    // The table's data source

    int numberOfRowsInTableView(NSTableView& table);
    ObjectValue tableView_objectValueForTableColumn_row(NSTableView& table, NSTableColumn& column,
                                                        int row);
    /// No value changes nothing.
    virtual void tableView_setObjectValue_forTableColumn_row(NSTableView& table,
                                                             const ObjectValue& value,
                                                             NSTableColumn& column, int row);

    // Rows are dragged between rows; the order counts as no change of a definition.

    bool tableView_writeRows_toPasteboard(NSTableView& table, const std::vector<int>& rows,
                                          NSPasteboard& pasteboard);
    unsigned tableView_validateDrop_proposedRow_proposedDropOperation(NSTableView& table,
                                                                      NSDraggingInfo& info, int row,
                                                                      int operation);
    bool tableView_acceptDrop_row_dropOperation(NSTableView& table, NSDraggingInfo& info, int row,
                                                int operation);

    /// The panel's delegate.
    virtual void windowWillClose(const NSNotification& notification);

protected:
    /// Takes the two over and loads the interface file with the controller as its owner.
    bool load(const char* interface, const std::shared_ptr<VelmoraSettings>& settings,
              const std::shared_ptr<VelmoraCommon>& delegate);
    /// Whether the interface file leaves an outlet open without which there is no panel; then
    /// none is shown, and the log tells.
    bool lacks(const char* interface, const char* outlet, const Id& object);
    /// Title, header of the trigger column, and the name under which the panel keeps its frame.
    void setTitles(const char* title, const char* triggerHeader, const char* autosaveName);

    NSPanelRef panel_;
    std::shared_ptr<NSTableColumn> globalFlagTC_;
    std::shared_ptr<NSTableColumn> menuItemTC_;
    std::shared_ptr<NSTableColumn> triggerTC_;
    std::shared_ptr<NSContentDrawer> gesturePreviewDrawer_;
    std::shared_ptr<NSControl> gesturePreview_;
    std::shared_ptr<NSButton> toggleGesturePreview_;
    std::shared_ptr<VelmoraTableView> tableView_;
    std::shared_ptr<VelmoraSettings> settings_;
    /// The component, which owns this controller.
    std::weak_ptr<VelmoraCommon> delegate_;
};

}  // namespace velmora
