#include "panels/VelmoraCommonUI.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "commands/VelmoraMnemonics.h"
#include "platform/foundation/NSRunLoop.h"
#include "support/HeadlessHost.h"
#include "support/TemporaryFolder.h"

namespace velmora {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;

HostDescription editor() {
    HostDescription description;
    description.processName = "Editor";
    description.menuBar = std::vector<ItemDescription>{submenu("Editor", {item("Quit", "quit:")})};
    return description;
}

TEST(VelmoraCommonUITest, APanelGoesWithItsControllerHoweverOftenItIsOpened) {
    HeadlessHost host(editor());
    host.writeSettings("VelmoraGestures.plist", "({ Path = p; Trigger = l; })");
    host.launch();
    for (const char* entry : {"Define Gestures…", "Define Menu Shortcuts…", "Define Mnemonics…",
                              "Edit Text Snippets…", "Edit Scripts…", "About Velmora"}) {
        for (int i = 0; i < 100; ++i) {
            const NSMenuItemRef item = host.itemAt(std::string("Editor/Velmora/") + entry);
            item->menu()->performActionForItemAtIndex(item->menu()->indexOfItem(*item));
            HeadlessPanel* open = host.desktop().frontPanel();
            ASSERT_NE(open, nullptr) << entry;
            const std::weak_ptr<NSObject> panel = open->panel().shared_from_this();
            const std::weak_ptr<NSObject> delegate = open->panel().delegate();
            if (i % 2 == 0) {
                open->userCloses();
            } else if (const NSButtonRef ok = open->buttonTitled("OK")) {
                ok->performClick(nullptr);
            } else {
                open->panel().performClose(nullptr);
            }
            ASSERT_EQ(host.desktop().frontPanel(), nullptr) << entry;
            host.advance(1);
            ASSERT_TRUE(panel.expired()) << entry;
            // The controller of the whole suite is the About panel's.
            ASSERT_NE(delegate.expired(), entry == std::string("About Velmora")) << entry;
        }
    }
}

TEST(VelmoraCommonUITest, WithoutItsInterfaceFileNothingIsShown) {
    const TemporaryFolder folder;
    std::filesystem::copy(VELMORA_SOURCE_DIR "/resources", folder.path(),
                          std::filesystem::copy_options::recursive);
    const std::vector<std::string> panels{"AboutPanel", "ManagePanel", "TextSnippets",
                                          "Preferences"};
    for (const std::string& panel : panels) {
        std::filesystem::remove(folder.path() + "/interface/" + panel + ".plist");
    }
    HeadlessSession session(folder.path());
    HeadlessProcess& process = session.addProcess(editor());
    const HeadlessProcess::Scope scope(process);
    process.launch();
    for (const char* entry :
         {"Define Gestures…", "Define Menu Shortcuts…", "Define Mnemonics…", "Edit Text Snippets…",
          "Edit Scripts…", "About Velmora", "Preferences…", "Define Gestures…"}) {
        const NSMenuItemRef item =
            menuItemAtPath(*process.desktop().menuBar(), std::string("Editor/Velmora/") + entry);
        item->menu()->performActionForItemAtIndex(item->menu()->indexOfItem(*item));
        EXPECT_EQ(process.desktop().frontPanel(), nullptr) << entry;
    }
    const auto log = session.transcript().texts(Transcript::Kind::log, "Editor");
    // One line a load; the second try for the gestures has a controller already.
    ASSERT_EQ(log.size(), 7U);
    EXPECT_THAT(log[0], HasSubstr("ManagePanel"));
}

TEST(VelmoraCommonUITest, AnInterfaceFileThatLeavesAnOutletOpenIsToldAndShowsNothing) {
    struct Row {
        const char* file;
        const char* taken;
        const char* entry;
        const char* told;
    };
    for (const Row& row :
         {Row{"ManagePanel", "menuItemTC = menuItemTC;", "Define Gestures…", "'menuItemTC'"},
          Row{"TextSnippets", "textArea = textArea;", "Edit Scripts…", "'textArea'"},
          Row{"Preferences", "tag = 13;", "Preferences…", "the chooser of slot 3"}}) {
        const TemporaryFolder folder;
        std::filesystem::copy(VELMORA_SOURCE_DIR "/resources", folder.path(),
                              std::filesystem::copy_options::recursive);
        const std::string file = folder.path() + "/interface/" + row.file + ".plist";
        std::ostringstream text;
        text << std::ifstream(file).rdbuf();
        std::string contents = text.str();
        contents.erase(contents.find(row.taken), std::string(row.taken).size());
        std::ofstream(file) << contents;
        HeadlessSession session(folder.path());
        HeadlessProcess& process = session.addProcess(editor());
        const HeadlessProcess::Scope scope(process);
        process.launch();
        const NSMenuItemRef item = menuItemAtPath(*process.desktop().menuBar(),
                                                  std::string("Editor/Velmora/") + row.entry);
        item->menu()->performActionForItemAtIndex(item->menu()->indexOfItem(*item));
        EXPECT_EQ(process.desktop().frontPanel(), nullptr) << row.file;
        EXPECT_THAT(session.transcript().texts(Transcript::Kind::log, "Editor"),
                    ElementsAre(AllOf(HasSubstr(row.file), HasSubstr(row.told))));
    }
}

TEST(VelmoraCommonUITest, AnOpenPanelShowsWhatAnotherApplicationAdds) {
    HeadlessHost host(editor());
    host.launch();
    const auto component = std::make_shared<VelmoraMnemonics>();
    component->init();
    component->showPanel();
    auto& panel = host.desktop().frontPanel()->panel();
    const auto table = std::dynamic_pointer_cast<NSTableView>(panel.controlNamed("tableView"));
    EXPECT_EQ(table->numberOfRows(), 0);
    host.writeSettings("VelmoraMnemonics.plist", "({ Path = p; Trigger = a; isGlobal = YES; })");
    component->checkGlobals();
    EXPECT_EQ(table->numberOfRows(), 1);
    EXPECT_EQ(textOf(table->objectValue(2, 0)), "a");
    panel.close();
}

}  // namespace
}  // namespace velmora
