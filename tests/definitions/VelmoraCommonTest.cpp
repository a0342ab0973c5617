#include "definitions/VelmoraCommon.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "platform/foundation/files/FileHistory.h"
#include "platform/runtime/Class.h"
#include "support/HeadlessHost.h"

namespace velmora {
namespace {

class Component final : public VelmoraCommon {
public:
    std::string componentName() override { return "Things"; }
    void activateSettings() override { ++activated; }
    void globalsChanged() override { ++changed; }

    int activated = 0;
    int changed = 0;
};

std::shared_ptr<Component> makeComponent() {
    auto component = std::make_shared<Component>();
    component->init();
    return component;
}

std::string triggersOf(Component& component) {
    std::string triggers;
    for (const auto& record : component.settings()->array()) triggers += record->trigger();
    return triggers;
}

/// A file of records by their triggers; a capital one is global.
std::string file(const std::string& triggers) {
    std::string text = "(";
    for (const char c : triggers) {
        if (text.size() > 1) text += ", ";
        text += std::string("{ Trigger = ") + c +
                "; isGlobal = " + (c >= 'A' && c <= 'Z' ? "YES" : "NO") + "; }";
    }
    return text + ")";
}

constexpr const char* ownFile = "EditorThings.plist";
constexpr const char* sharedFile = "VelmoraThings.plist";

TEST(VelmoraCommonTest, MergingKeepsPlacesDropsWhatIsGoneAndAppendsWhatIsNew) {
    struct Row {
        const char* own;
        const char* shared;
        const char* merged;
        bool appended;
        bool dropped;
    };
    const std::vector<Row> rows{
        {"aBcDe", "DB", "aBcDe", false, false}, {"aBcDe", "BXDY", "aBcDeXY", true, false},
        {"aBcDe", "B", "aBce", false, true},    {"aBcDe", "X", "aceX", true, true},
        {"aBc", "", "ac", false, true},         {"", "AB", "AB", true, false},
        {"BaBB", "B", "aB", false, true},       {"Ba", "BBC", "BaBC", true, false},
        {"ab", "ab", "abab", true, false},
    };
    for (const Row& row : rows) {
        HeadlessHost host("Editor");
        host.writeSettings(ownFile, file(row.own));
        const auto component = makeComponent();
        host.writeSettings(sharedFile, file(row.shared));
        component->settings()->setGlobalChanged(false);
        // A missing shared file has dropped the global ones at init.
        host.writeSettings(ownFile, file(row.own));
        component->settings()->initWithContentsOfFile_forceGlobal(host.settingsFile(ownFile),
                                                                  false);
        EXPECT_EQ(component->mixinGlobals(), row.appended) << row.own << " + " << row.shared;
        EXPECT_EQ(triggersOf(*component), row.merged) << row.own << " + " << row.shared;
        EXPECT_EQ(component->settings()->globalChanged(), row.dropped);
    }
}

TEST(VelmoraCommonTest, RecordsOfTheSharedFileAreGlobalWhateverItSays) {
    HeadlessHost host("Editor");
    host.writeSettings(sharedFile, "( { Trigger = x; isGlobal = NO; } )");
    const auto component = makeComponent();
    ASSERT_EQ(component->settings()->count(), 1);
    EXPECT_TRUE(component->settings()->objectAtIndex(0)->isGlobal());
}

TEST(VelmoraCommonTest, TheSharedFileIsReadAgainOnlyWhenItsDateDiffers) {
    HeadlessHost host("Editor");
    host.writeSettings(sharedFile, file("A"));
    const auto component = makeComponent();
    const std::string path = host.settingsFile(sharedFile);
    const int reads = host.files().readsOf(path);
    component->checkGlobals();
    component->checkGlobals();
    EXPECT_EQ(host.files().readsOf(path), reads);
    EXPECT_EQ(component->changed, 0);

    host.writeSettings(sharedFile, file("AB"));
    host.files().memory().setModificationDate(path, NSDate{5});
    component->checkGlobals();
    EXPECT_EQ(triggersOf(*component), "AB");
    EXPECT_EQ(component->changed, 1);

    // An older date is another date too; removals alone change nothing in the application.
    host.writeSettings(sharedFile, file("B"));
    host.files().memory().setModificationDate(path, NSDate{4});
    component->checkGlobals();
    EXPECT_EQ(triggersOf(*component), "B");
    EXPECT_EQ(component->changed, 1);

    host.files().remove(path);
    component->checkGlobals();
    EXPECT_EQ(triggersOf(*component), "");
}

TEST(VelmoraCommonTest, SavingWritesTheSharedFileOnlyWhenTheSharedSetChanged) {
    HeadlessHost host("Editor");
    host.writeSettings(sharedFile, file("A"));
    const auto component = makeComponent();
    component->settings()->addObject();
    host.files().remove(host.settingsFile(sharedFile));
    component->storeAndActivateSettings();
    EXPECT_TRUE(host.readSettings(ownFile).has_value());
    EXPECT_FALSE(host.readSettings(sharedFile).has_value());
    EXPECT_EQ(component->activated, 1);

    component->settings()->objectAtIndex(0)->setTrigger("Z");
    component->settings()->setGlobalChanged(true);
    component->save();
    EXPECT_FALSE(component->settings()->globalChanged());
    VelmoraSettings shared;
    shared.initWithContentsOfFile_forceGlobal(host.settingsFile(sharedFile), false);
    ASSERT_EQ(shared.count(), 1);
    EXPECT_EQ(shared.objectAtIndex(0)->trigger(), "Z");
}

TEST(VelmoraCommonTest, WhatCannotBeReadForAReasonThatMayPassIsReadAtTheNextActivation) {
    HeadlessHost host("Editor");
    host.writeSettings(ownFile, file("bA"));
    host.writeSettings(sharedFile, file("AC"));
    for (const char* name : {ownFile, sharedFile}) {
        host.files().setReadFails(host.settingsFile(name), true);
    }
    const auto component = makeComponent();
    component->checkGlobals();
    EXPECT_EQ(triggersOf(*component), "");
    EXPECT_EQ(component->activated, 0);
    EXPECT_EQ(host.log(), std::vector<std::string>{"Cannot read '" + host.settingsFile(ownFile) +
                                                   "' now: Input/output error"});

    host.files().setReadFails(host.settingsFile(sharedFile), false);
    component->checkGlobals();
    EXPECT_EQ(triggersOf(*component), "AC");
    host.files().setReadFails(host.settingsFile(ownFile), false);
    component->checkGlobals();
    EXPECT_EQ(triggersOf(*component), "bAC") << "in the order that the user gave them";
    EXPECT_EQ(component->activated, 1);
    const int reads = host.files().readsOf(host.settingsFile(ownFile));
    component->checkGlobals();
    EXPECT_EQ(host.files().readsOf(host.settingsFile(ownFile)), reads);

    // Once it has been read, a fault takes nothing away, and the date counts as not seen.
    host.writeSettings(sharedFile, file("D"));
    host.files().setReadFails(host.settingsFile(sharedFile), true);
    component->checkGlobals();
    EXPECT_EQ(triggersOf(*component), "bAC");
    EXPECT_FALSE(component->settings()->globalChanged());
    host.files().setReadFails(host.settingsFile(sharedFile), false);
    component->checkGlobals();
    EXPECT_EQ(triggersOf(*component), "bD");
}

TEST(VelmoraCommonTest, WhatWasAcceptedInAPanelIsNotReplacedByAFileThatIsReadLater) {
    HeadlessHost host("Editor");
    host.writeSettings(ownFile, file("a"));
    host.files().setReadFails(host.settingsFile(ownFile), true);
    const auto component = makeComponent();
    component->settings()->addObject();
    component->settings()->objectAtIndex(0)->setTrigger("z");
    component->storeAndActivateSettings();
    host.files().setReadFails(host.settingsFile(ownFile), false);
    component->checkGlobals();
    EXPECT_EQ(triggersOf(*component), "z");
    const FileHistory history(host.files(), host.settingsFile(ownFile));
    ASSERT_EQ(history.versions().size(), 1U);
    EXPECT_EQ(host.files().contentsOfFile(history.pathOf(history.versions()[0])), file("a"));
}

TEST(VelmoraCommonTest, ASettingsDirectoryThatIsGoneTakesNothingAway) {
    HeadlessHost host("Editor");
    host.writeSettings(sharedFile, file("A"));
    const auto component = makeComponent();
    const std::string folder = host.settingsFile("").substr(0, host.settingsFile("").size() - 1);
    host.files().remove(host.settingsFile(sharedFile));
    ASSERT_TRUE(host.files().remove(folder));
    component->checkGlobals();
    component->checkGlobals();
    EXPECT_EQ(triggersOf(*component), "A");
    EXPECT_EQ(host.log().size(), 1U);
    // One that has its files again is used, and so is one that was saved to.
    host.writeSettings(sharedFile, file("AB"));
    component->checkGlobals();
    EXPECT_EQ(triggersOf(*component), "AB");
    host.files().remove(host.settingsFile(sharedFile));
    component->checkGlobals();
    EXPECT_EQ(triggersOf(*component), "");
}

TEST(VelmoraCommonTest, FindsTheFirstDefinitionOfExactlyThatTrigger) {
    HeadlessHost host("Editor");
    host.writeSettings(ownFile,
                       "( {Trigger=\"\"; Path=none;}, {Trigger=a; Path=one;}, "
                       "{Trigger=a; Path=two;} )");
    const auto component = makeComponent();
    EXPECT_EQ(component->findTrigger("a")->path(), "one");
    EXPECT_EQ(component->findTrigger("A"), nullptr);
    EXPECT_EQ(component->findTrigger(""), nullptr);
    EXPECT_EQ(component->findTrigger(std::nullopt), nullptr);
}

TEST(VelmoraCommonTest, ItemsAreFoundByPathElseByTheirOneAction) {
    struct Row {
        const char* path;
        const char* selector;
        const char* found;  // by its key equivalent, which tells equal paths apart
    };
    const std::vector<Row> rows{
        {"File/Close", "performClose:", "1"},
        {"File/Close", "", "1"},
        {"File/Gone", "save:", "2"},
        {"File/Gone", "performClose:", nullptr},  // two leaves have it
        {"File/Gone", "", nullptr},
        {"Edit/Find", "find:", "4"},  // opens a submenu: never a match itself
        {"Edit/Find/Next", "", "4"},
        {"File/Open/Close", "", "5"},  // a title with a slash, before the submenu of that name
        {"file/close", "", nullptr},
        {"Context Menu: Save", "", nullptr},
        {"", "save:", "2"},
        {"", "", nullptr},
    };
    HeadlessHost host("Editor");
    host.menu({submenu("Editor", {item("About")}),
               submenu("File", {itemWithKey("Close", "performClose:", "1", 0), separator(),
                                itemWithKey("Save", "save:", "2", 0),
                                itemWithKey("Open/Close", "toggle:", "5", 0),
                                submenu("Open", {itemWithKey("Close", "other:", "6", 0)})}),
               submenu("Edit", {submenu("Find", {itemWithKey("Next", "find:", "4", 0)}),
                                itemWithKey("Close", "performClose:", "3", 0)})});
    const auto component = makeComponent();
    for (const Row& row : rows) {
        const VelmoraSettingRef definition = VelmoraSetting::newSetting();
        definition->setPath(std::string(row.path));
        definition->setSelector(row.selector);
        const NSMenuItemRef found = component->findMenuItem(*definition);
        EXPECT_EQ(found ? found->keyEquivalent() : "none", row.found ? row.found : "none")
            << row.path << " " << row.selector;
    }
}

TEST(VelmoraCommonTest, AnEmptyPathIsThatOfALeafWithoutATitleInTheBarItself) {
    HeadlessHost host("Editor");
    host.menu({submenu("File", {itemWithKey("Save", "save:", "2", 0), separator()}), separator()});
    const auto component = makeComponent();
    const VelmoraSettingRef definition = VelmoraSetting::newSetting();
    definition->setSelector("save:");
    EXPECT_EQ(component->findMenuItem(*definition), host.desktop().menuBar()->itemAtIndex(1));
}

TEST(VelmoraCommonTest, MenusFilledOnDemandAreSearchedOnceTheyWereUpdated) {
    HeadlessHost host("Editor");
    host.menu({submenu(
        "File",
        {lazySubmenu("Recent", {item("letter.txt"), lazySubmenu("Older", {item("note.txt")})})})});
    const auto component = makeComponent();
    const VelmoraSettingRef definition = VelmoraSetting::newSetting();
    definition->setPath(std::string("File/Recent/Older/note.txt"));
    EXPECT_EQ(component->findMenuItem(*definition), nullptr);
    component->updateMenu();
    EXPECT_NE(component->findMenuItem(*definition), nullptr);
}

/// Asks for an update of all menus from within the update.
class Nagging final : public NSObject {
public:
    explicit Nagging(Component& component) : component_(component) {}
    Class& isa() const override {
        static auto* object = &(new Class("Nagging", &NSObject::classObject()))
                                   ->method<&Nagging::menuNeedsUpdate>("menuNeedsUpdate:");
        return *object;
    }
    void menuNeedsUpdate(NSMenu& /*menu*/) {
        ++calls;
        component_.updateMenu();
    }
    int calls = 0;

private:
    Component& component_;
};

TEST(VelmoraCommonTest, AnUpdateWithinAnUpdateDoesNothing) {
    HeadlessHost host("Editor");
    host.menu({submenu("File", {item("Save")})});
    const auto component = makeComponent();
    const auto nagging = std::make_shared<Nagging>(*component);
    host.itemAt("File/Save")->menu()->setDelegate(nagging);
    component->updateMenu();
    EXPECT_EQ(nagging->calls, 1);
}

TEST(VelmoraCommonTest, ACommandRunsOnALaterPassAndNotAfterItsItemHasGone) {
    HeadlessHost host("Editor");
    host.menu({submenu("File", {item("Save", "save:"), item("Close", "close:")})});
    const auto component = makeComponent();
    component->executeMenuItemLater(host.itemAt("File/Save"));
    const NSMenuItemRef close = host.itemAt("File/Close");
    component->executeMenuItemLater(close);
    EXPECT_TRUE(host.commands().empty());
    close->menu()->removeItemAtIndex(1);
    host.advance(1);
    EXPECT_EQ(host.commands(), std::vector<std::string>{"File/Save"});
}

TEST(VelmoraCommonTest, ABaseWithoutANameSaysSo) {
    HeadlessHost host("Editor");
    EXPECT_EQ(VelmoraCommon().componentName(), "");
    EXPECT_EQ(host.log(), std::vector<std::string>{"Subclass must implement componentName method"});
}

}  // namespace
}  // namespace velmora
