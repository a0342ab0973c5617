#include "platform/appkit/controls/NSTableColumn.h"

#include <algorithm>

#include "platform/appkit/controls/NSTableView.h"
#include "platform/runtime/Class.h"

namespace velmora {

Class& NSTableColumn::classObject() {
    static auto* object = new Class("NSTableColumn", &NSObject::classObject());
    return *object;
}

NSTableColumn::NSTableColumn(std::string identifier) : identifier_(std::move(identifier)) {}

void NSTableColumn::changed() {
    if (table_) table_->columnsChanged();
}

void NSTableColumn::setDataCell(NSCellRef cell) {
    if (!cell) return;
    dataCell_ = std::move(cell);
    changed();
}

void NSTableColumn::setWidth(float width) {
    width_ = std::max(width, minWidth_);
    changed();
}

void NSTableColumn::setMinWidth(float width) {
    minWidth_ = width;
    setWidth(width_);
}

void NSTableColumn::setEditable(bool editable) {
    editable_ = editable;
    changed();
}

void NSTableColumn::setResizable(bool resizable) {
    resizable_ = resizable;
    changed();
}

}  // namespace velmora
