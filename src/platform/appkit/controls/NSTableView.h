#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/appkit/NSPasteboard.h"
#include "platform/appkit/controls/NSControl.h"
#include "platform/appkit/controls/NSTableColumn.h"

namespace velmora {

class NSMenuItem;

/// Where a drop goes: onto a row, or between that row and the one above it.
enum NSTableViewDropOperation { NSTableViewDropOn = 0, NSTableViewDropAbove = 1 };

/// What shows a table on a desktop, beyond what every control needs.
class TablePeer : public ControlPeer {
public:
    /// The rows are others, or their values are; the table's count is the new one.
    virtual void reloadData() = 0;
    /// Number, widths, titles or cells of the columns, or the rows' height.
    virtual void columnsChanged() = 0;
    /// The table has selected other rows; not called for what the user selects.
    virtual void selectionChanged() = 0;
    virtual void scrollRowToVisible(int row) = 0;
    /// Lets the user edit the text of a cell, all of which is selected if asked for. Ends with
    /// NSTableView::userEdited, or with nothing.
    virtual void editCell(int column, int row, bool select) = 0;
    /// What the desktop's own tables do with a key or a button: the event that the table was given.
    virtual void handleEvent(const NSEvent& event) = 0;
};

/// A table whose values are its data source's. The data source answers
///   `numberOfRowsInTableView:`                       int(NSTableView&)
///   `tableView:objectValueForTableColumn:row:`       ObjectValue(NSTableView&, NSTableColumn&,
///   int)
/// and may answer
///   `tableView:setObjectValue:forTableColumn:row:`
///                                void(NSTableView&, const ObjectValue&, NSTableColumn&, int)
///   `tableView:writeRows:toPasteboard:`
///                                bool(NSTableView&, const std::vector<int>&, NSPasteboard&)
///   `tableView:validateDrop:proposedRow:proposedDropOperation:`
///                                unsigned(NSTableView&, NSDraggingInfo&, int, int)
///   `tableView:acceptDrop:row:dropOperation:`
///                                bool(NSTableView&, NSDraggingInfo&, int, int)
/// The delegate may answer `tableViewSelectionDidChange:` (`void(const NSNotification&)`, the table
/// is the object). Without a method of its own the table asks nothing: reloading asks for the count
/// alone, and values are asked for when they are shown.
class NSTableView : public NSControl {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    NSTableView() = default;
    ~NSTableView() override;

    // Columns. Rows and columns count from 0.

    const std::vector<NSTableColumnRef>& tableColumns() const { return columns_; }
    void addTableColumn(const NSTableColumnRef& column);
    /// Null for an identifier that no column has.
    NSTableColumnRef tableColumnWithIdentifier(const std::string& identifier) const;
    /// Gives what the columns lack or exceed of the table's width to those that may be resized, in
    /// proportion to their widths.
    void sizeToFit();
    /// In points.
    float rowHeight() const { return rowHeight_; }
    void setRowHeight(float height);
    /// Whether lines are drawn between the cells.
    bool drawsGrid() const { return drawsGrid_; }
    virtual void setDrawsGrid(bool draws);

    // Rows

    /// Not kept alive, both.
    Id dataSource() const { return dataSource_.lock(); }
    void setDataSource(const Id& source) { dataSource_ = source; }
    Id delegate() const { return delegate_.lock(); }
    void setDelegate(const Id& delegate) { delegate_ = delegate; }

    /// Asks for the count. Rows that are gone are no longer selected.
    void reloadData();
    /// As of the last reloadData.
    int numberOfRows() const { return numberOfRows_; }
    /// Nothing outside of the table.
    ObjectValue objectValue(int column, int row) const;
    /// The column's data cell with the row's value; null outside of the table. Good until the next
    /// call.
    NSCellRef preparedCell(int column, int row) const;

    // The selection

    /// The row that was selected last and still is; -1 without one.
    int selectedRow() const { return selectedRow_; }
    int numberOfSelectedRows() const { return static_cast<int>(selection_.size()); }
    /// Ascending.
    const std::vector<int>& selectedRowEnumerator() const { return selection_; }
    bool isRowSelected(int row) const;
    /// Alone, or in addition to those that are. A row that does not exist changes nothing.
    void selectRow_byExtendingSelection(int row, bool extend);
    void deselectAll(const Id& sender);
    bool allowsMultipleSelection() const { return allowsMultipleSelection_; }
    void setAllowsMultipleSelection(bool allows) { allowsMultipleSelection_ = allows; }
    void scrollRowToVisible(int row);

    // Editing

    /// Begins to edit the cell where its column may be edited and shows texts.
    virtual void editColumn_row_withEvent_select(int column, int row, const NSEventRef& event,
                                                 bool select);
    /// The cell that is being edited; -1 for none.
    int editedColumn() const { return editedColumn_; }
    int editedRow() const { return editedRow_; }

    // Dragging

    void registerForDraggedTypes(std::vector<std::string> types) { types_ = std::move(types); }
    const std::vector<std::string>& registeredDraggedTypes() const { return types_; }

    // Events: what the platform's own tables do with what is pressed over the table, or while it
    // has the keyboard

    bool acceptsFirstResponder() override { return true; }
    virtual void otherMouseDown(const NSEventRef& event);
    virtual void keyDown(const NSEventRef& event);

    // For desktops

    /// Set together with setPeer.
    void setTablePeer(TablePeer* peer);
    /// How much room there is for the columns, in points.
    void userResized(float width) { width_ = width; }
    /// These are selected now, ascending, the last of them being `last`.
    void userSelectedRows(std::vector<int> rows, int last);
    void userDoubleClicked(int column, int row, const NSEventRef& event);
    /// A click into a cell that is a check box: its state changes.
    void userClicked(int column, int row);
    /// An item of the menu of a pop-up cell was chosen in that row.
    void userChose(NSMenuItem& item, int column, int row);
    /// What the user has made of a text that was being edited.
    void userEdited(int column, int row, const std::string& text);
    void userGaveUpEditing();
    /// A drag of these rows, ascending; false when they are not to be dragged.
    bool userBeganDrag(const std::vector<int>& rows);
    /// The bits of NSDragOperation for a drop there of what is dragged; 0 refuses.
    unsigned userDraggedTo(int row, NSTableViewDropOperation operation);
    /// False when it is refused. The drag is over in either case.
    bool userDropped(int row, NSTableViewDropOperation operation);
    void userEndedDrag() { drag_ = nullptr; }
    /// For the columns.
    void columnsChanged();

private:
    bool hasCell(int column, int row) const;
    void setObjectValue(const ObjectValue& value, int column, int row);
    /// Tells the delegate if it is another selection than before.
    void select(std::vector<int> rows, int last, bool byUser);

    std::vector<NSTableColumnRef> columns_;
    std::weak_ptr<NSObject> dataSource_;
    std::weak_ptr<NSObject> delegate_;
    TablePeer* tablePeer_ = nullptr;
    int numberOfRows_ = 0;
    /// Ascending.
    std::vector<int> selection_;
    int selectedRow_ = -1;
    int editedColumn_ = -1;
    int editedRow_ = -1;
    std::vector<std::string> types_;
    std::shared_ptr<NSDraggingInfo> drag_;
    std::optional<float> width_;
    float rowHeight_ = 17;
    bool drawsGrid_ = false;
    bool allowsMultipleSelection_ = true;
};

using NSTableViewRef = std::shared_ptr<NSTableView>;

}  // namespace velmora
