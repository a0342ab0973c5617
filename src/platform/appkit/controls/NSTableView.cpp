#include "platform/appkit/controls/NSTableView.h"

#include <algorithm>

#include "platform/appkit/controls/NSPopUpButtonCell.h"
#include "platform/foundation/NSNotificationCenter.h"
#include "platform/runtime/Class.h"

namespace velmora {

namespace {

constexpr std::string_view selectionDidChange = "NSTableViewSelectionDidChangeNotification";

[[maybe_unused]] const Class& registered = NSTableView::classObject();

}  // namespace

Class& NSTableView::classObject() {
    static auto* object =
        &(new Class("NSTableView", &NSControl::classObject()))->makes<NSTableView>();
    return *object;
}

NSTableView::~NSTableView() {
    for (const NSTableColumnRef& column : columns_) column->setTableView(nullptr);
}

// --- columns
// ---------------------------------------------------------------------------------------

void NSTableView::addTableColumn(const NSTableColumnRef& column) {
    columns_.push_back(column);
    column->setTableView(this);
    columnsChanged();
}

NSTableColumnRef NSTableView::tableColumnWithIdentifier(const std::string& identifier) const {
    const auto found = std::find_if(columns_.begin(), columns_.end(), [&](const auto& column) {
        return column->identifier() == identifier;
    });
    return found == columns_.end() ? nullptr : *found;
}

void NSTableView::sizeToFit() {
    if (!width_) return;
    float all = 0;
    float resizable = 0;
    for (const NSTableColumnRef& column : columns_) {
        all += column->width();
        if (column->isResizable()) resizable += column->width();
    }
    if (resizable <= 0) return;
    const float factor = (resizable + *width_ - all) / resizable;
    for (const NSTableColumnRef& column : columns_) {
        if (column->isResizable()) column->setWidth(column->width() * factor);
    }
}

void NSTableView::setRowHeight(float height) {
    rowHeight_ = height;
    columnsChanged();
}

void NSTableView::setDrawsGrid(bool draws) {
    drawsGrid_ = draws;
    setNeedsDisplay();
}

void NSTableView::columnsChanged() {
    if (tablePeer_) tablePeer_->columnsChanged();
}

// --- rows
// ------------------------------------------------------------------------------------------

void NSTableView::reloadData() {
    static const Selector selector = Selector::named("numberOfRowsInTableView:");
    const Id source = dataSource_.lock();
    const bool answers = source && source->respondsToSelector(selector);
    numberOfRows_ = answers ? std::max(message<int(NSTableView&)>(*source, selector, *this), 0) : 0;
    if (tablePeer_) tablePeer_->reloadData();
    if (selection_.empty() || selection_.back() < numberOfRows_) return;
    std::vector<int> left = selection_;
    left.erase(std::lower_bound(left.begin(), left.end(), numberOfRows_), left.end());
    const int last = selectedRow_ < numberOfRows_ ? selectedRow_ : left.empty() ? -1 : left.back();
    select(std::move(left), last, false);
}

bool NSTableView::hasCell(int column, int row) const {
    return column >= 0 && column < static_cast<int>(columns_.size()) && row >= 0 &&
           row < numberOfRows_;
}

ObjectValue NSTableView::objectValue(int column, int row) const {
    static const Selector selector = Selector::named("tableView:objectValueForTableColumn:row:");
    const Id source = dataSource_.lock();
    if (!source || !hasCell(column, row) || !source->respondsToSelector(selector)) return {};
    return message<ObjectValue(NSTableView&, NSTableColumn&, int)>(
        *source, selector, const_cast<NSTableView&>(*this),
        *columns_[static_cast<std::size_t>(column)], row);
}

NSCellRef NSTableView::preparedCell(int column, int row) const {
    if (!hasCell(column, row)) return nullptr;
    NSCellRef cell = columns_[static_cast<std::size_t>(column)]->dataCell();
    cell->setObjectValue(objectValue(column, row));
    return cell;
}

void NSTableView::setObjectValue(const ObjectValue& value, int column, int row) {
    static const Selector selector =
        Selector::named("tableView:setObjectValue:forTableColumn:row:");
    const Id source = dataSource_.lock();
    if (!source || !hasCell(column, row) || !source->respondsToSelector(selector)) return;
    const NSTableColumnRef kept = columns_[static_cast<std::size_t>(column)];
    message<void(NSTableView&, const ObjectValue&, NSTableColumn&, int)>(*source, selector, *this,
                                                                         value, *kept, row);
    setNeedsDisplay();
}

// --- the selection
// ---------------------------------------------------------------------------------

bool NSTableView::isRowSelected(int row) const {
    return std::binary_search(selection_.begin(), selection_.end(), row);
}

void NSTableView::select(std::vector<int> rows, int last, bool byUser) {
    selectedRow_ = last;
    if (rows == selection_) return;
    selection_ = std::move(rows);
    if (tablePeer_ && !byUser) tablePeer_->selectionChanged();
    static const Selector selector = Selector::named("tableViewSelectionDidChange:");
    const Id delegate = delegate_.lock();
    if (!delegate || !delegate->respondsToSelector(selector)) return;
    const NSNotification notification{selectionDidChange, this, std::nullopt};
    message<void(const NSNotification&)>(*delegate, selector, notification);
}

void NSTableView::selectRow_byExtendingSelection(int row, bool extend) {
    if (row < 0 || row >= numberOfRows_) return;
    std::vector<int> rows;
    if (extend && allowsMultipleSelection_) rows = selection_;
    const auto place = std::lower_bound(rows.begin(), rows.end(), row);
    if (place == rows.end() || *place != row) rows.insert(place, row);
    select(std::move(rows), row, false);
}

void NSTableView::deselectAll(const Id& /*sender*/) {
    select({}, -1, false);
}

void NSTableView::userSelectedRows(std::vector<int> rows, int last) {
    std::erase_if(rows, [this](int row) { return row < 0 || row >= numberOfRows_; });
    if (!std::binary_search(rows.begin(), rows.end(), last)) last = rows.empty() ? -1 : rows.back();
    select(std::move(rows), last, true);
}

void NSTableView::scrollRowToVisible(int row) {
    if (tablePeer_) tablePeer_->scrollRowToVisible(row);
}

// --- editing
// ---------------------------------------------------------------------------------------

void NSTableView::editColumn_row_withEvent_select(int column, int row, const NSEventRef& /*event*/,
                                                  bool select) {
    if (!hasCell(column, row)) return;
    const NSTableColumnRef edited = columns_[static_cast<std::size_t>(column)];
    if (!edited->isEditable() || !dynamic_cast<NSTextFieldCell*>(edited->dataCell().get())) return;
    if (!isRowSelected(row)) selectRow_byExtendingSelection(row, false);
    editedColumn_ = column;
    editedRow_ = row;
    if (tablePeer_) tablePeer_->editCell(column, row, select);
}

void NSTableView::userDoubleClicked(int column, int row, const NSEventRef& event) {
    if (isEnabled() && hasCell(column, row)) {
        editColumn_row_withEvent_select(column, row, event, true);
    }
}

void NSTableView::userEdited(int column, int row, const std::string& text) {
    userGaveUpEditing();
    setObjectValue(PropertyList(text), column, row);
}

void NSTableView::userGaveUpEditing() {
    editedColumn_ = -1;
    editedRow_ = -1;
}

void NSTableView::userClicked(int column, int row) {
    const auto cell = std::dynamic_pointer_cast<NSButtonCell>(preparedCell(column, row));
    if (!cell || !isEnabled() || cell->buttonType() != NSSwitchButton) return;
    if (!columns_[static_cast<std::size_t>(column)]->isEditable()) return;
    cell->setNextState();
    setObjectValue(cell->objectValue(), column, row);
}

void NSTableView::userChose(NSMenuItem& item, int column, int row) {
    const auto cell = std::dynamic_pointer_cast<NSPopUpButtonCell>(preparedCell(column, row));
    if (!cell || !isEnabled()) return;
    cell->userChose(item);
    setObjectValue(cell->objectValue(), column, row);
}

// --- dragging
// --------------------------------------------------------------------------------------

bool NSTableView::userBeganDrag(const std::vector<int>& rows) {
    static const Selector selector = Selector::named("tableView:writeRows:toPasteboard:");
    drag_ = nullptr;
    const Id source = dataSource_.lock();
    if (types_.empty() || rows.empty() || !source || !source->respondsToSelector(selector)) {
        return false;
    }
    auto drag = std::make_shared<NSDraggingInfo>();
    const bool dragged = message<bool(NSTableView&, const std::vector<int>&, NSPasteboard&)>(
        *source, selector, *this, rows, drag->draggingPasteboard());
    const std::vector<std::string>& offered = drag->draggingPasteboard().types();
    const bool taken = std::any_of(offered.begin(), offered.end(), [this](const auto& type) {
        return std::find(types_.begin(), types_.end(), type) != types_.end();
    });
    if (dragged && taken) drag_ = std::move(drag);
    return drag_ != nullptr;
}

unsigned NSTableView::userDraggedTo(int row, NSTableViewDropOperation operation) {
    static const Selector selector =
        Selector::named("tableView:validateDrop:proposedRow:proposedDropOperation:");
    const Id source = dataSource_.lock();
    const auto drag = drag_;
    if (!drag || !source || !source->respondsToSelector(selector)) return NSDragOperationNone;
    return message<unsigned(NSTableView&, NSDraggingInfo&, int, int)>(*source, selector, *this,
                                                                      *drag, row, operation);
}

bool NSTableView::userDropped(int row, NSTableViewDropOperation operation) {
    static const Selector selector = Selector::named("tableView:acceptDrop:row:dropOperation:");
    const bool allowed = userDraggedTo(row, operation) != NSDragOperationNone;
    const auto drag = std::exchange(drag_, nullptr);
    const Id source = dataSource_.lock();
    if (!allowed || !source || !source->respondsToSelector(selector)) return false;
    return message<bool(NSTableView&, NSDraggingInfo&, int, int)>(*source, selector, *this, *drag,
                                                                  row, operation);
}

// --- events
// ----------------------------------------------------------------------------------------

void NSTableView::setTablePeer(TablePeer* peer) {
    tablePeer_ = peer;
    setPeer(peer);
}

void NSTableView::otherMouseDown(const NSEventRef& event) {
    if (tablePeer_) tablePeer_->handleEvent(*event);
}

void NSTableView::keyDown(const NSEventRef& event) {
    if (tablePeer_) tablePeer_->handleEvent(*event);
}

}  // namespace velmora
