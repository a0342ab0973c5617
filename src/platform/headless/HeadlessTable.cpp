#include "platform/headless/HeadlessTable.h"

#include "platform/foundation/files/Characters.h"

namespace velmora {

HeadlessTable::HeadlessTable(std::shared_ptr<NSTableView> table) : table_(std::move(table)) {
    table_->setTablePeer(this);
}

HeadlessTable::~HeadlessTable() {
    table_->setTablePeer(nullptr);
}

void HeadlessTable::handleEvent(const NSEvent& event) {
    constexpr char32_t upArrow = 0xF700;
    constexpr char32_t downArrow = 0xF701;
    if (event.type() != NSKeyDown) return;
    const char32_t key = firstCharacter(event.fields().characters);
    if (key != upArrow && key != downArrow) return;
    const int row = table_->selectedRow() + (key == downArrow ? 1 : -1);
    if (row >= 0 && row < table_->numberOfRows()) table_->userSelectedRows({row}, row);
}

}  // namespace velmora
