#include "commands/VelmoraMnemonics.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/appkit/NSApplication.h"
#include "platform/appkit/panels/NSPanel.h"
#include "support/HeadlessHost.h"

namespace velmora {
namespace {

/// A host with a panel of one field, whose delegate is the component.
struct Session : HeadlessHost {
    explicit Session(const std::string& definitions) {
        menu({submenu("File", {item("Save", "save:"), disabled(item("Close", "close:"))}),
              lazySubmenu("Recent", {item("a.txt", "open:")})});
        writeSettings("EditorMnemonics.plist", definitions);
        mnemonics->init();
        field->setDelegate(mnemonics);
    }

    /// Runs the panel while that is typed, and then Escape.
    int run(const std::vector<std::string>& keys) {
        for (const std::string& key : keys) type(key);
        type("escape");
        return NSApp().runModalForWindow(*panel);
    }

    std::shared_ptr<NSTextField> field = std::make_shared<NSTextField>();
    NSPanelRef panel = std::make_shared<NSPanel>("Panel", std::vector<NSPanel::Row>{{field}});
    std::shared_ptr<VelmoraMnemonics> mnemonics = std::make_shared<VelmoraMnemonics>();
};

constexpr const char* definitions =
    "({ Trigger = s; Path = \"File/Save\"; }, { Trigger = c; Path = \"File/Close\"; }, "
    "{ Trigger = r; Path = \"Recent/a.txt\"; }, { Trigger = a; Selector = \"save:\"; }, "
    "{ Trigger = \"é\"; Path = \"File/Save\"; }, { Trigger = n; })";

TEST(VelmoraMnemonicsTest, TheSessionEndsWithCodeOneWhenTheTextNamesAnItem) {
    struct Row {
        std::vector<std::string> keys;
        int code;
        std::vector<std::string> ran;
    };
    const int stopped = NSRunStoppedResponse;
    const std::vector<Row> rows{
        {{"s"}, 1, {"File/Save"}},
        {{"a"}, 1, {"File/Save"}},  // by its one item with the action
        {{"é"}, 1, {"File/Save"}},
        {{"x", "delete", "s"}, 1, {"File/Save"}},
        {{"S"}, stopped, {}},
        {{"x", "s"}, stopped, {}},
        {{"n"}, stopped, {}},
        {{}, stopped, {}},
        {{"c"}, 1, {}},  // found, but disabled
        {{"r"}, stopped, {}},
        {{"r", "delete", "r"}, 1, {"Recent/a.txt"}},
    };
    for (const Row& row : rows) {
        Session session(definitions);
        EXPECT_EQ(session.run(row.keys), row.code);
        session.mnemonics->executeMnemonic();
        session.mnemonics->executeMnemonic();  // nothing is left to run
        EXPECT_EQ(session.commands(), row.ran);
    }
}

TEST(VelmoraMnemonicsTest, AnItemThatHasLeftItsMenuDoesNotRun) {
    Session session(definitions);
    EXPECT_EQ(session.run({"s"}), 1);
    const NSMenuItemRef save = session.itemAt("File/Save");
    NSMenu* menu = save->menu();
    menu->removeItemAtIndex(0);
    session.mnemonics->executeMnemonic();
    menu->insertItem_atIndex(save, 0);
    session.mnemonics->executeMnemonic();
    EXPECT_TRUE(session.commands().empty());
}

TEST(VelmoraMnemonicsTest, ALaterLookUpForgetsTheItem) {
    Session session(definitions);
    EXPECT_EQ(session.run({"s"}), 1);
    EXPECT_FALSE(session.mnemonics->findTrigger("x"));
    session.mnemonics->executeMnemonic();
    EXPECT_TRUE(session.commands().empty());
}

TEST(VelmoraMnemonicsTest, OnlyTheCancelCommandIsDealtWith) {
    Session session(definitions);
    for (const char* command : {"insertNewline:", "insertTab:", "cancel", "Cancel:"}) {
        EXPECT_FALSE(session.field->userCommanded(Selector::named(command))) << command;
    }
    EXPECT_TRUE(session.field->userCommanded(Selector::named("cancel:")));
}

}  // namespace
}  // namespace velmora
