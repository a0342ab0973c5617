#include "platform/appkit/controls/NSMatrix.h"

#include <algorithm>

#include "platform/runtime/Class.h"

namespace velmora {

namespace {

NSCellRef makeCell(NSMatrixMode mode) {
    if (mode == NSListModeMatrix) return std::make_shared<NSTextFieldCell>();
    auto cell = std::make_shared<NSButtonCell>();
    cell->setButtonType(mode == NSRadioModeMatrix ? NSRadioButton : NSSwitchButton);
    return cell;
}

}  // namespace

Class& NSMatrix::classObject() {
    static auto* object = new Class("NSMatrix", &NSControl::classObject());
    return *object;
}

NSMatrix::NSMatrix(NSMatrixMode mode, int rows, int columns)
    : mode_(mode), rows_(rows), columns_(columns) {
    for (int i = 0; i < rows * columns; ++i) {
        cells_.push_back(makeCell(mode));
        cells_.back()->setTag(i);
        cells_.back()->setControlView(this);
    }
}

NSMatrix::~NSMatrix() {
    for (const NSCellRef& cell : cells_) cell->setControlView(nullptr);
}

NSCellRef NSMatrix::cellAtRow_column(int row, int column) const {
    const bool inside = row >= 0 && row < rows_ && column >= 0 && column < columns_;
    if (!inside) return nullptr;
    const int index = row * columns_ + column;
    return cells_[static_cast<std::size_t>(index)];
}

NSCellRef NSMatrix::cellWithTag(int tag) const {
    const auto found = std::find_if(cells_.begin(), cells_.end(),
                                    [tag](const NSCellRef& cell) { return cell->tag() == tag; });
    return found == cells_.end() ? nullptr : *found;
}

bool NSMatrix::selectCellWithTag(int tag) {
    const NSCellRef cell = cellWithTag(tag);
    if (cell) select(cell);
    return cell != nullptr;
}

void NSMatrix::select(const NSCellRef& cell) {
    if (mode_ == NSRadioModeMatrix && selected_) selected_->setState(NSOffState);
    selected_ = cell;
    if (mode_ == NSRadioModeMatrix) cell->setState(NSOnState);
    setNeedsDisplay();
}

void NSMatrix::userClicked(int row, int column) {
    const NSCellRef cell = cellAtRow_column(row, column);
    const auto button = std::dynamic_pointer_cast<NSButtonCell>(cell);
    if (!button || !isEnabled() || !button->isEnabled()) return;
    button->setNextState();
    select(cell);
    sendAction();
}

}  // namespace velmora
