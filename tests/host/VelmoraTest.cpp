#include "host/Velmora.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "gestures/VelmoraMouseHandling.h"
#include "platform/appkit/NSApplication.h"
#include "support/HeadlessHost.h"

namespace velmora {
namespace {

/// A menu in short: a letter an item, "-" a separator, V ours.
std::vector<ItemDescription> items(const std::string& layout) {
    std::vector<ItemDescription> result;
    for (const char c : layout) result.push_back(c == '-' ? separator() : item(std::string(1, c)));
    return result;
}

std::string layoutOf(const NSMenu& menu) {
    std::string layout;
    for (const NSMenuItemRef& item : menu.itemArray()) {
        layout += item->isSeparatorItem() ? "-" : item->title() == "Velmora" ? "V" : item->title();
    }
    return layout;
}

TEST(VelmoraTest, TheItemStandsByTheSeparatorsOfTheFirstMenu) {
    const std::vector<std::pair<std::string, std::string>> rows{
        {"a-p-s-hos-q", "a-p-s-V-hos-q"},
        {"-abc-d", "-abVc-d"},  // the second separator from the end is the first item
        {"a-bc-d", "a-V-bc-d"},
        {"--", "-V-"},
        {"---", "--V--"},
        {"abc", "abVc"},
        {"ab-cdef", "ab-Vcdef"},
        {"abcdefghi", "abcVdefghi"},
        {"ab", "aVb"},
        {"a", "Va"},
        {"", "V"},
    };
    for (const auto& [before, after] : rows) {
        HeadlessHost host("Editor");
        host.menu({submenu("Editor", items(before)), submenu("File", {item("Save")})});
        host.launch();
        EXPECT_EQ(layoutOf(*NSApp().mainMenu()->itemAtIndex(0)->submenu()), after) << before;
    }
}

TEST(VelmoraTest, TheSubmenusEntriesSendTheirActions) {
    HeadlessHost host("Editor");
    host.menu({submenu("Editor", items("abc"))});
    host.launch();
    const NSMenuRef menu = NSApp().mainMenu()->itemAtIndex(0)->submenu()->itemAtIndex(2)->submenu();
    ASSERT_TRUE(menu);
    EXPECT_EQ(menu->title(), "Velmora");
    std::vector<std::string> panels;
    // Two have loops of their own: the mnemonics' panel, and the alert of the update check.
    for (int modal = 0; modal < 2; ++modal) {
        host.then([&] { panels.push_back(host.desktop().frontPanel()->title()); });
        host.type("escape");
    }
    for (int i = 0; i < menu->numberOfItems(); ++i) menu->performActionForItemAtIndex(i);
    EXPECT_EQ(panels, (std::vector<std::string>{"Run Mnemonic", "Alert"}));
    for (const char* list : {"Text Snippets", "Scripts"}) {
        const NSMenuRef fixed = menu->itemAtIndex(menu->indexOfItemWithTitle(list))->submenu();
        ASSERT_TRUE(fixed);
        EXPECT_EQ(fixed->numberOfItems(), 2) << list;
    }
    const std::vector<std::string> opened = host.opened();
    ASSERT_EQ(opened.size(), 3U);
    EXPECT_TRUE(opened[0].starts_with("file:///") && opened[0].ends_with("/Manual/index.html"));
    EXPECT_EQ(opened[1], "https://velmora.example/");
    EXPECT_EQ(opened[2], "https://korvane.example/");
    EXPECT_TRUE(host.log().empty());
}

TEST(VelmoraTest, TheSubmenuSpeaksTheUsersLanguage) {
    HostDescription description;
    description.processName = "Editor";
    description.menuBar = std::vector<ItemDescription>{submenu("Editor", items("abc"))};
    description.languages = {"de_DE"};
    HeadlessHost host(description);
    host.launch();
    EXPECT_TRUE(host.itemAt("Editor/Velmora/Velmora-Hilfe"));
    EXPECT_TRUE(host.itemAt("Editor/Velmora/Textbausteine/Hilfe zu Textbausteinen"));
    std::string title;
    host.then([&] { title = host.desktop().frontPanel()->title(); });
    host.type("escape");
    const NSMenuRef menu = host.itemAt("Editor/Velmora")->submenu();
    menu->performActionForItemAtIndex(
        menu->indexOfItemWithTitle("Befehl über Kurznamen aufrufen …"));
    EXPECT_EQ(title, "Befehl über Kurznamen aufrufen");
    menu->performActionForItemAtIndex(menu->indexOfItemWithTitle("Velmora-Hilfe"));
    ASSERT_EQ(host.opened().size(), 1U);
    EXPECT_TRUE(host.opened()[0].ends_with("/de.lproj/Manual/index.html")) << host.opened()[0];
}

TEST(VelmoraTest, AHostWithoutAMainMenuIsLeftAlone) {
    HeadlessHost host("Editor");
    host.writeSettings("VelmoraDefaults.plist", "{ isEnabled0=YES; mouseButton0=1; }");
    host.launch();
    EXPECT_FALSE(VelmoraActions[0]);
    EXPECT_EQ(*VelmoraMouseHandler, nullptr);
}

TEST(VelmoraTest, AFirstItemWithoutASubmenuStillGetsTheComponents) {
    HeadlessHost host("Editor");
    host.writeSettings("VelmoraDefaults.plist", "{ isEnabled0=YES; mouseButton0=1; }");
    host.menu({item("About"), submenu("File", items("abc"))});
    host.launch();
    EXPECT_EQ(layoutOf(*host.itemAt("File/a")->menu()), "abc");
    EXPECT_TRUE(VelmoraActions[0]);
    EXPECT_NE(VelmoraGestures::activeInstance(), nullptr);
}

TEST(VelmoraTest, AFurtherMenuBarGetsTheItemByTheSameRule) {
    HeadlessHost host("Editor");
    host.menu({submenu("Editor", items("abc"))});
    host.launch();
    NSMenu bar;
    const auto first = std::make_shared<NSMenuItem>("Window", Selector(), "");
    const auto menu = std::make_shared<NSMenu>("Window");
    first->setSubmenu(menu);
    bar.addItem(first);
    for (const char* title : {"x", "y"}) {
        menu->addItem(std::make_shared<NSMenuItem>(title, Selector(), ""));
    }
    NSNotificationCenter::defaultCenter().postNotification(
        {NSApplicationDidShowMainMenuNotification, &bar, std::nullopt});
    EXPECT_EQ(layoutOf(*menu), "xVy");
    const NSMenu& own = *NSApp().mainMenu()->itemAtIndex(0)->submenu();
    EXPECT_EQ(menu->itemAtIndex(1)->submenu(), own.itemAtIndex(2)->submenu());
}

TEST(VelmoraTest, TheSettingsDirectoryIsMadeWhereItIsMissing) {
    HeadlessHost host("Editor");
    const std::string home = host.session().homeDirectory();
    EXPECT_FALSE(host.files().fileExistsAtPath(home + "/Library"));
    EXPECT_EQ(Velmora::settingsDirectory(), home + "/Library/Application Support/Velmora");
    EXPECT_TRUE(host.files().fileExistsAtPath(Velmora::settingsDirectory()));
}

}  // namespace
}  // namespace velmora
