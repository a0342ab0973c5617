#include "platform/appkit/controls/NSTableView.h"

#include <gmock/gmock.h>

#include "platform/appkit/controls/NSPopUpButtonCell.h"
#include "platform/appkit/panels/NSPanel.h"
#include "platform/foundation/NSNotificationCenter.h"
#include "platform/runtime/Class.h"
#include "replay/PanelUser.h"
#include "support/HeadlessHost.h"

namespace velmora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A table's data source and delegate: what it was told, and rows of a name and a flag.
class Source final : public NSObject {
public:
    static Class& classObject() {
        static auto* object =
            &(new Class("TableTestSource", &NSObject::classObject()))
                 ->method<&Source::count>("numberOfRowsInTableView:")
                 .method<&Source::value>("tableView:objectValueForTableColumn:row:")
                 .method<&Source::setValue>("tableView:setObjectValue:forTableColumn:row:")
                 .method<&Source::write>("tableView:writeRows:toPasteboard:")
                 .method<&Source::validate>(
                     "tableView:validateDrop:proposedRow:proposedDropOperation:")
                 .method<&Source::accept>("tableView:acceptDrop:row:dropOperation:")
                 .method<&Source::selectionChanged>("tableViewSelectionDidChange:");
        return *object;
    }
    Class& isa() const override { return classObject(); }

    std::vector<std::pair<std::string, bool>> rows;
    int asked = 0;
    std::vector<int> selections;
    std::string dropped;

private:
    int count(NSTableView& /*table*/) { return static_cast<int>(rows.size()); }
    ObjectValue value(NSTableView& /*table*/, NSTableColumn& column, int row) {
        ++asked;
        const auto& [name, flag] = rows.at(static_cast<std::size_t>(row));
        return column.identifier() == "flag" ? PropertyList(flag) : PropertyList(name);
    }
    void setValue(NSTableView& /*table*/, const ObjectValue& value, NSTableColumn& column,
                  int row) {
        auto& [name, flag] = rows.at(static_cast<std::size_t>(row));
        if (column.identifier() == "flag") {
            flag = propertyListOf(value)->boolValue().value();
        } else if (const auto item = std::dynamic_pointer_cast<NSMenuItem>(objectOf(value))) {
            name = item->title();
        } else {
            name = textOf(value);
        }
    }
    bool write(NSTableView& /*table*/, const std::vector<int>& dragged, NSPasteboard& board) {
        if (dragged.front() == 0) return false;
        board.declareTypes_owner({"rows"}, nullptr);
        NSArray numbers(dragged.begin(), dragged.end());
        return board.setPropertyList_forType(numbers, "rows") &&
               !board.setPropertyList_forType(numbers, "other");
    }
    unsigned validate(NSTableView& /*table*/, NSDraggingInfo& /*drag*/, int /*row*/, int where) {
        return where == NSTableViewDropAbove ? 15U : 0U;
    }
    bool accept(NSTableView& /*table*/, NSDraggingInfo& drag, int row, int /*where*/) {
        const NSArray& numbers = *drag.draggingPasteboard().propertyListForType("rows")->array();
        for (const PropertyList& number : numbers) dropped += textOf(number) + ' ';
        dropped += "to " + std::to_string(row);
        return true;
    }
    void selectionChanged(const NSNotification& notification) {
        selections.push_back(static_cast<NSTableView&>(*notification.object).selectedRow());
    }
};

/// Shows the item that was chosen last as its value.
class ItemCell final : public NSPopUpButtonCell {
public:
    ObjectValue objectValue() const override { return Id(chosen); }
    void setObjectValue(const ObjectValue& value) override {
        if (propertyListOf(value)) menu()->itemAtIndex(0)->setTitle(textOf(value));
    }
    NSMenuItemRef chosen;
};

class NSTableViewTest : public testing::Test {
protected:
    NSTableViewTest() {
        for (const auto* identifier : {"name", "flag"}) {
            table_->addTableColumn(std::make_shared<NSTableColumn>(identifier));
        }
        auto box = std::make_shared<NSButtonCell>();
        box->setButtonType(NSSwitchButton);
        table_->tableColumns()[1]->setDataCell(box);
        table_->setName("table");
        table_->setDataSource(source_);
        table_->setDelegate(source_);
        source_->rows = {{"a", true}, {"b", false}, {"c", false}, {"d", true}, {"e", false}};
        table_->reloadData();
    }

    std::string act(PanelStep::Act act, std::vector<int> rows, const std::string& column = {},
                    const std::string& text = {}) {
        PanelStep step;
        step.act = act;
        step.rows = std::move(rows);
        step.name = column;
        step.text = text;
        return PanelUser(*panel_).act(step);
    }
    std::string drag(std::vector<int> rows, int to, bool onto = false) {
        PanelStep step;
        step.act = PanelStep::Act::dragRows;
        step.rows = std::move(rows);
        step.number = to;
        step.onto = onto;
        return PanelUser(*panel_).act(step);
    }

    HeadlessHost host_;
    std::shared_ptr<Source> source_ = std::make_shared<Source>();
    NSTableViewRef table_ = std::make_shared<NSTableView>();
    NSPanelRef panel_ = std::make_shared<NSPanel>("Table", std::vector<NSPanel::Row>{{table_}});
};

using Act = PanelStep::Act;

TEST_F(NSTableViewTest, ReloadingAsksForNothingButTheCount) {
    source_->rows.assign(10'000, {"row", false});
    table_->reloadData();
    EXPECT_EQ(table_->numberOfRows(), 10'000);
    EXPECT_EQ(source_->asked, 0);
    EXPECT_EQ(table_->preparedCell(0, 9'999)->stringValue(), "row");
    EXPECT_EQ(source_->asked, 1);
    EXPECT_EQ(table_->preparedCell(0, 10'000), nullptr);
    EXPECT_EQ(table_->preparedCell(2, 0), nullptr);
    table_->setDataSource(nullptr);
    table_->reloadData();
    EXPECT_EQ(table_->numberOfRows(), 0);
}

TEST_F(NSTableViewTest, TheSelectionKnowsWhatCameLastAndTellsOnlyOfChanges) {
    table_->selectRow_byExtendingSelection(3, false);
    table_->selectRow_byExtendingSelection(1, true);
    table_->selectRow_byExtendingSelection(1, true);
    table_->selectRow_byExtendingSelection(5, false);
    EXPECT_THAT(table_->selectedRowEnumerator(), ElementsAre(1, 3));
    EXPECT_EQ(table_->selectedRow(), 1);
    EXPECT_EQ(act(Act::selectRows, {4, 0}), "");
    EXPECT_EQ(table_->selectedRow(), 0);
    source_->rows.resize(3);
    table_->reloadData();
    EXPECT_THAT(table_->selectedRowEnumerator(), ElementsAre(0));
    table_->deselectAll(nullptr);
    EXPECT_EQ(table_->selectedRow(), -1);
    EXPECT_THAT(source_->selections, ElementsAre(3, 1, 0, 0, -1));
    table_->setAllowsMultipleSelection(false);
    table_->selectRow_byExtendingSelection(0, true);
    table_->selectRow_byExtendingSelection(2, true);
    EXPECT_THAT(table_->selectedRowEnumerator(), ElementsAre(2));
}

TEST_F(NSTableViewTest, WhatTheUserDoesInACellReachesTheDataSource) {
    EXPECT_EQ(act(Act::typeInCell, {2}, "name", "new"), "");
    EXPECT_EQ(act(Act::clickCell, {2}, "flag"), "");
    EXPECT_EQ(source_->rows[2], std::make_pair(std::string("new"), true));
    EXPECT_EQ(act(Act::typeInCell, {2}, "flag", "new"), "this cannot be edited");
    table_->tableColumns()[0]->setEditable(false);
    EXPECT_EQ(act(Act::typeInCell, {2}, "name", "newer"), "this cannot be edited");
    EXPECT_EQ(act(Act::clickCell, {5}, "flag"), "there is no row 5");
    EXPECT_EQ(act(Act::clickCell, {0}, "size"), "there is no column size");
    PanelStateExpectation rows;
    EXPECT_THAT(PanelUser(*panel_).look(rows),
                ElementsAre("a|on", "b|off", "new|on", "d|on", "e|off"));
}

TEST_F(NSTableViewTest, AnItemOfACellsMenuRunsAndItsValueIsStored) {
    const auto cell = std::make_shared<ItemCell>();
    cell->initTextCell_pullsDown("", true);
    const auto menu = std::make_shared<NSMenu>();
    const auto add = [&](NSMenu& to, const char* title) {
        to.addItem(NSMenuItem::initWithTitle_action_keyEquivalent(title, {}, ""));
        return to.itemArray().back();
    };
    add(*menu, "face");
    const NSMenuItemRef file = add(*menu, "File");
    file->setSubmenu(std::make_shared<NSMenu>("File"));
    cell->chosen = add(*file->submenu(), "Save");
    cell->setMenu(menu);
    table_->tableColumns()[0]->setDataCell(cell);
    EXPECT_EQ(act(Act::chooseInCell, {1}, "name", "File/Save"), "");
    EXPECT_EQ(source_->rows[1].first, "Save");
    EXPECT_EQ(act(Act::chooseInCell, {1}, "name", "File"), "there is no item File");
    PanelStateExpectation rows;
    EXPECT_THAT(PanelUser(*panel_).look(rows),
                ElementsAre("a|on", "Save|off", "c|off", "d|on", "e|off"));
}

TEST_F(NSTableViewTest, OnlyRegisteredTablesDragAndOnlyAllowedDropsAreTaken) {
    EXPECT_EQ(drag({1}, 3), "these rows are not to be dragged");
    table_->registerForDraggedTypes({"rows"});
    EXPECT_EQ(drag({0}, 3), "these rows are not to be dragged");
    EXPECT_EQ(drag({2, 1}, 4, true), "the drop is refused");
    EXPECT_EQ(source_->dropped, "");
    EXPECT_EQ(drag({2, 1}, 5), "");
    EXPECT_EQ(source_->dropped, "1 2 to 5");
    EXPECT_FALSE(table_->userDropped(2, NSTableViewDropAbove)) << "the drag is over";
}

TEST_F(NSTableViewTest, ColumnsShareTheRoomAsFarAsTheyMayChange) {
    const auto& columns = table_->tableColumns();
    columns[0]->setWidth(200);
    columns[1]->setWidth(50);
    columns[1]->setResizable(false);
    table_->sizeToFit();
    EXPECT_EQ(columns[0]->width(), 200) << "nobody has said how much room there is";
    table_->userResized(400);
    table_->sizeToFit();
    EXPECT_EQ(columns[0]->width(), 350);
    EXPECT_EQ(columns[1]->width(), 50);
    table_->userResized(20);
    table_->sizeToFit();
    EXPECT_EQ(columns[0]->width(), columns[0]->minWidth());
}

/// Notes what it is offered, and takes key equivalents.
class CapturingTable final : public NSTableView {
public:
    void keyDown(const NSEventRef& event) override {
        offered += "key ";
        NSTableView::keyDown(event);
    }
    bool performKeyEquivalent(const NSEventRef& event) override {
        offered += "equivalent ";
        return NSTableView::performKeyEquivalent(event) || takes;
    }
    std::string offered;
    bool takes = true;
};

TEST_F(NSTableViewTest, CommandAndFunctionKeysAreOfferedAsEquivalentsFirst) {
    const auto table = std::make_shared<CapturingTable>();
    table->setDataSource(source_);
    panel_ = std::make_shared<NSPanel>("Keys", std::vector<NSPanel::Row>{{table}});
    panel_->makeKeyAndOrderFront();
    table->reloadData();
    for (const char* key : {"a", "f5", "forwarddelete", "down"}) host_.type(key);
    host_.hold(NSCommandKeyMask);
    host_.type("s");
    host_.then([&] { table->takes = false; });
    host_.type("s");
    host_.run();
    EXPECT_EQ(table->offered, "key equivalent key key equivalent equivalent key ");
    EXPECT_EQ(table->selectedRow(), 0) << "the arrow is the table's own";
    EXPECT_THAT(host_.events(), IsEmpty());
}

}  // namespace
}  // namespace velmora
