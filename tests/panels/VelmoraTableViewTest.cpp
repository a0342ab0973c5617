#include "panels/VelmoraTableView.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/appkit/panels/NSPanel.h"
#include "platform/runtime/Class.h"

namespace velmora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Takes what is offered to a row, and edits in its second column itself.
class CapturingSource final : public NSObject {
public:
    static Class& classObject() {
        using Self = CapturingSource;
        static auto* object =
            &(new Class("CapturingTableSource", &NSObject::classObject()))
                 ->method<&Self::numberOfRowsInTableView>("numberOfRowsInTableView:")
                 .method<&Self::value>("tableView:objectValueForTableColumn:row:")
                 .method<&Self::otherMouseDown_inRow>("otherMouseDown:inRow:")
                 .method<&Self::performKeyEquivalent_inRow>("performKeyEquivalent:inRow:")
                 .method<&Self::doubleClickInColumn_row>("doubleClickInColumn:row:");
        return *object;
    }
    Class& isa() const override { return classObject(); }

    int numberOfRowsInTableView(NSTableView& /*table*/) { return 3; }
    ObjectValue value(NSTableView& /*table*/, NSTableColumn& /*column*/, int /*row*/) { return {}; }
    void otherMouseDown_inRow(const NSEventRef& event, int row) {
        taken.push_back("button " + std::to_string(event->buttonNumber()) + " " +
                        std::to_string(row));
    }
    bool performKeyEquivalent_inRow(const NSEventRef& event, int row) {
        taken.push_back((event ? event->fields().charactersIgnoringModifiers : "none") + " " +
                        std::to_string(row));
        return true;
    }
    bool doubleClickInColumn_row(int column, int row) {
        taken.push_back("double " + std::to_string(column) + " " + std::to_string(row));
        return column == 1;
    }

    std::vector<std::string> taken;
};

/// Shows a table nowhere, and hears what is left to the platform.
class Peer final : public TablePeer {
public:
    void draw() override {}
    void needsDisplay() override {}
    void reloadData() override {}
    void columnsChanged() override {}
    void selectionChanged() override {}
    void scrollRowToVisible(int /*row*/) override {}
    void editCell(int column, int row, bool /*select*/) override {
        left.push_back("edit " + std::to_string(column) + " " + std::to_string(row));
    }
    void handleEvent(const NSEvent& event) override {
        left.push_back(event.fields().charactersIgnoringModifiers);
    }

    std::vector<std::string> left;
};

class VelmoraTableViewTest : public testing::Test {
protected:
    VelmoraTableViewTest() {
        for (const char* column : {"a", "b"}) {
            table_->addTableColumn(std::make_shared<NSTableColumn>(column));
        }
        table_->setPeer(&peer_);
        table_->setTablePeer(&peer_);
        table_->setDataSource(source_);
        table_->setDoubleClickDelegate(source_);
        table_->reloadData();
    }
    ~VelmoraTableViewTest() override {
        table_->setTablePeer(nullptr);
        table_->setPeer(nullptr);
    }

    void press(const std::string& key, std::uint32_t modifierFlags = 0, bool repeated = false) {
        NSEvent::Fields fields;
        fields.type = NSKeyDown;
        fields.characters = fields.charactersIgnoringModifiers = key;
        fields.modifierFlags = modifierFlags;
        fields.isARepeat = repeated;
        const auto event = std::make_shared<NSEvent>(std::move(fields));
        if (!panel_->userPressedKey(event)) table_->keyDown(event);
    }
    void pressButton(int button) {
        NSEvent::Fields fields;
        fields.type = NSOtherMouseDown;
        fields.buttonNumber = button;
        table_->otherMouseDown(std::make_shared<NSEvent>(std::move(fields)));
    }

    Peer peer_;
    std::shared_ptr<CapturingSource> source_ = std::make_shared<CapturingSource>();
    std::shared_ptr<VelmoraTableView> table_ = std::make_shared<VelmoraTableView>();
    NSPanelRef panel_ = std::make_shared<NSPanel>(
        "Panel", std::vector<NSPanel::Row>{{std::make_shared<NSTextField>()}, {table_}});
};

const char* const f1 = "\xEF\x9C\x84";
const char* const f35 = "\xEF\x9C\xA6";
const char* const afterF35 = "\xEF\x9C\xA7";
const char* const forwardDelete = "\xEF\x9C\xA8";

TEST_F(VelmoraTableViewTest, WithASelectedRowItsInputIsTheSources) {
    table_->selectRow_byExtendingSelection(1, false);
    press("x", NSCommandKeyMask);
    press("X", NSCommandKeyMask | NSShiftKeyMask, true);
    press(f1);
    press(f35);
    press(forwardDelete);
    pressButton(2);
    EXPECT_THAT(source_->taken, ElementsAre("x 1", f1 + std::string(" 1"), f35 + std::string(" 1"),
                                            "none 1", "button 2 1"));
    press("x");
    press("y", NSControlKeyMask);
    press(afterF35);
    EXPECT_THAT(peer_.left, ElementsAre("x", "y", afterF35));
}

TEST_F(VelmoraTableViewTest, WithoutOneItIsThePlatforms) {
    press("x", NSCommandKeyMask);
    press(forwardDelete);
    pressButton(2);
    EXPECT_THAT(source_->taken, IsEmpty());
    EXPECT_THAT(peer_.left, ElementsAre("x", forwardDelete, ""));
}

TEST_F(VelmoraTableViewTest, ADoubleClickThatIsTakenEditsNothing) {
    table_->userDoubleClicked(0, 2, nullptr);
    table_->userDoubleClicked(1, 2, nullptr);
    EXPECT_THAT(source_->taken, ElementsAre("double 0 2", "double 1 2"));
    EXPECT_THAT(peer_.left, ElementsAre("edit 0 2"));
}

TEST_F(VelmoraTableViewTest, TheGridStaysAsItIs) {
    table_->setDrawsGrid(!table_->drawsGrid());
    EXPECT_FALSE(table_->drawsGrid());
}

}  // namespace
}  // namespace velmora
