#pragma once

#include "platform/appkit/controls/NSTableView.h"

namespace velmora {

/// A table in a panel of the headless desktop. Of keys it knows the arrows up and down, which
/// select the row before or after.
class HeadlessTable final : public TablePeer {
public:
    explicit HeadlessTable(std::shared_ptr<NSTableView> table);
    ~HeadlessTable() override;
    HeadlessTable(const HeadlessTable&) = delete;
    HeadlessTable& operator=(const HeadlessTable&) = delete;

    const std::shared_ptr<NSTableView>& table() const { return table_; }

    void draw() override {}
    void needsDisplay() override {}
    void reloadData() override {}
    void columnsChanged() override {}
    void selectionChanged() override {}
    void scrollRowToVisible(int /*row*/) override {}
    void editCell(int /*column*/, int /*row*/, bool /*select*/) override {}
    void handleEvent(const NSEvent& event) override;

private:
    std::shared_ptr<NSTableView> table_;
};

}  // namespace velmora
