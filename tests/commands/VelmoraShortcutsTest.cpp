#include "commands/VelmoraShortcuts.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "commands/VelmoraTriggers.h"
#include "platform/appkit/NSApplication.h"
#include "platform/foundation/NSNotificationCenter.h"
#include "platform/runtime/Class.h"
#include "support/CountingDesktop.h"
#include "support/HeadlessHost.h"

namespace velmora {
namespace {

/// A host whose items have combinations of their own, with the component at work.
struct Session : HeadlessHost {
    explicit Session(const std::string& definitions) {
        menu({submenu("File", {itemWithKey("New", "new:", "n", NSCommandKeyMask),
                               itemWithKey("Save", "save:", "s", NSCommandKeyMask), separator(),
                               disabled(itemWithKey("Close", "close:", "w", NSCommandKeyMask))}),
              submenu("View", {submenu("Zoom", {item("In", "in:"), item("Out", "out:")})}),
              lazySubmenu("Recent", {item("a.txt", "open:")})});
        writeSettings("EditorShortcuts.plist", definitions);
        shortcuts->init();
    }

    /// What each item of the menu bar that has a key equivalent has, by its path.
    std::map<std::string, std::string> triggers() { return triggersIn(*NSApp().mainMenu()); }

    bool press(const std::string& key, std::uint32_t flags = NSCommandKeyMask) {
        NSEvent::Fields fields;
        fields.type = NSKeyDown;
        fields.modifierFlags = flags;
        fields.charactersIgnoringModifiers = key;
        return shortcuts->handleEvent(std::make_shared<NSEvent>(fields));
    }

    bool pressButton(int number, std::uint32_t flags) {
        NSEvent::Fields fields;
        fields.type = NSOtherMouseDown;
        fields.modifierFlags = flags;
        fields.buttonNumber = number;
        return shortcuts->handleEvent(std::make_shared<NSEvent>(fields));
    }

    void add(const std::string& menu, const ItemDescription& description) {
        static_cast<HeadlessMenu&>(*itemAt(menu)->submenu()).append(description);
    }

    void remove(const std::string& path) {
        const NSMenuItemRef removed = itemAt(path);
        removed->menu()->removeItemAtIndex(removed->menu()->indexOfItem(*removed));
    }

    std::shared_ptr<VelmoraShortcuts> shortcuts = std::make_shared<VelmoraShortcuts>();

private:
    static std::map<std::string, std::string> triggersIn(const NSMenu& menu) {
        std::map<std::string, std::string> found;
        for (const NSMenuItemRef& inner : menu.itemArray()) {
            if (inner->hasSubmenu()) {
                found.merge(triggersIn(*inner->submenu()));
            } else if (!inner->keyEquivalent().empty()) {
                found[pathOfMenuItem(*inner)] = triggerForMenuItem(*inner);
            }
        }
        return found;
    }
};

using Triggers = std::map<std::string, std::string>;

std::string definition(const std::string& trigger, const std::string& path,
                       const std::string& selector = {}) {
    return "{ Trigger = \"" + trigger + "\"; Path = \"" + path + "\"; Selector = \"" + selector +
           "\"; }, ";
}

std::string list(const std::string& definitions) {
    return "(" + definitions + ")";
}

TEST(VelmoraShortcutsTest, DefinitionsAreWrittenIntoTheirItemsAtTheStart) {
    struct Row {
        std::string definitions;
        Triggers triggers;
    };
    const std::vector<Row> rows{
        // an item without one, one that has another, one that loses its own
        {definition("8k", "View/Zoom/In"),
         {{"File/New", "8n"}, {"File/Save", "8s"}, {"File/Close", "8w"}, {"View/Zoom/In", "8k"}}},
        {definition("8k", "File/Save"),
         {{"File/New", "8n"}, {"File/Save", "8k"}, {"File/Close", "8w"}}},
        {definition("0", "File/Save"), {{"File/New", "8n"}, {"File/Close", "8w"}}},
        // a combination of other items, disabled ones too
        {definition("8n", "File/Save"), {{"File/Save", "8n"}, {"File/Close", "8w"}}},
        {definition("8w", "File/Save"), {{"File/New", "8n"}, {"File/Save", "8w"}}},
        {definition("8s", "File/Close"), {{"File/New", "8n"}, {"File/Close", "8s"}}},
        // the case and the whole mask count
        {definition("8N", "File/Save") + definition("Cn", "File/Close"),
         {{"File/New", "8n"}, {"File/Save", "8N"}, {"File/Close", "Cn"}}},
        // found by the one item with the action
        {definition("9\xEF\x9C\x84", "Gone", "in:"),
         {{"File/New", "8n"},
          {"File/Save", "8s"},
          {"File/Close", "8w"},
          {"View/Zoom/In", "9\xEF\x9C\x84"}}},
        // three that swap
        {definition("8n", "File/Save") + definition("8s", "File/Close") +
             definition("8w", "File/New"),
         {{"File/New", "8w"}, {"File/Save", "8n"}, {"File/Close", "8s"}}},
        // the first of two for one combination, and of two for one item
        {definition("8k", "File/New") + definition("8k", "File/Save"),
         {{"File/New", "8k"}, {"File/Close", "8w"}}},
        {definition("8k", "File/Gone", "gone:") + definition("8k", "File/Save"),
         {{"File/New", "8n"}, {"File/Save", "8k"}, {"File/Close", "8w"}}},
        {definition("8k", "File/New") + definition("8l", "File/New"),
         {{"File/New", "8k"}, {"File/Save", "8s"}, {"File/Close", "8w"}}},
        // what can be no item's
        {definition("1m3", "File/Save") + definition("", "File/Save") + definition("8n", "") +
             definition("8n", "View/Zoom", "zoom:") + definition("8k", "Recent/a.txt", "open:"),
         {{"File/New", "8n"}, {"File/Save", "8s"}, {"File/Close", "8w"}}},
    };
    for (const Row& row : rows) {
        Session session(list(row.definitions));
        EXPECT_EQ(session.triggers(), row.triggers) << row.definitions;
    }
}

TEST(VelmoraShortcutsTest, ItemsAreGivenTheirShortcutsWhenTheyComeOrChange) {
    struct Row {
        std::string name;
        std::string definitions;
        std::function<void(Session&)> change;
        std::string path, trigger;
    };
    const auto print = [](Session& s) { s.add("File", item("Print", "print:")); };
    const std::string printing = definition("8p", "File/Print", "print:");
    const std::vector<Row> rows{
        {"added", printing, print, "File/Print", "8p"},
        {"rebuilt", printing, [&](Session& s) { print(s), s.remove("File/Print"), print(s); },
         "File/Print", "8p"},
        {"added with the host's own", printing,
         [](Session& s) { s.add("File", itemWithKey("Print", "print:", "x", NSShiftKeyMask)); },
         "File/Print", "8p"},
        {"renamed", printing, [](Session& s) { s.add("File", item("Drucken", "print:")); },
         "File/Drucken", "8p"},
        {"reset by the host", definition("8k", "File/New", "new:"),
         [](Session& s) { s.itemAt("File/New")->setKeyEquivalent("n"); }, "File/New", "8k"},
        {"taken from the first of two others only", definition("8p", "File/Print", "print:"),
         [&](Session& s) {
             s.itemAt("File/New")->setKeyEquivalent("p");
             s.itemAt("File/Save")->setKeyEquivalent("p");
             print(s);
             EXPECT_EQ(s.itemAt("File/New")->keyEquivalent(), "");
         },
         "File/Save", "8p"},
        {"disabled when it changed, enabled later", definition("8k", "File/Close", "close:"),
         [](Session& s) {
             const NSMenuItemRef close = s.itemAt("File/Close");
             close->setKeyEquivalent("w");
             EXPECT_EQ(close->keyEquivalent(), "w");
             close->setEnabled(true);
         },
         "File/Close", "8k"},
        {"a submenu that comes with its items", definition("8a", "Tools/More/Sort", "sort:"),
         [](Session& s) {
             s.menu({submenu("Tools", {submenu("More", {item("Sort", "sort:")})})});
             s.menu({submenu("Tools", {submenu("More", {item("Sort", "sort:")})})});
         },
         "Tools/More/Sort", "8a"},
        {"a menu that is filled when its item changes", definition("8a", "Recent/a.txt", "open:"),
         [](Session& s) { s.itemAt("Recent")->setTitle("Recent Files"); }, "Recent/a.txt", "8a"},
        {"a pending one at any change", definition("8i", "Sicht/Zoom/In", "none:"),
         [](Session& s) {
             s.itemAt("View")->submenu()->setTitle("Sicht");
             s.itemAt("File/New")->setEnabled(false);
         },
         "Sicht/Zoom/In", "8i"},
        {"the second of two when its item changes",
         definition("8k", "File/New", "new:") + definition("8k", "File/Save", "save:"),
         [](Session& s) {
             EXPECT_EQ(s.itemAt("File/New")->keyEquivalent(), "k");
             s.itemAt("File/Save")->setEnabled(false);
             EXPECT_EQ(s.itemAt("File/New")->keyEquivalent(), "k");
             s.itemAt("File/Save")->setEnabled(true);
         },
         "File/Save", "8k"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        Session session(list(row.definitions));
        row.change(session);
        Triggers triggers = session.triggers();
        EXPECT_EQ(triggers[row.path], row.trigger);
    }
}

TEST(VelmoraShortcutsTest, AKeyOrAButtonRunsTheItemOfItsFirstDefinition) {
    const std::string definitions =
        list(definition("8k", "File/New") + definition("8k", "File/Save") +
             definition("8A", "View/Zoom/In") + definition("C1", "View/Zoom/Out") +
             definition("8É", "File/Save") + definition("8c", "File/Close") +
             definition("8g", "View/Gone/In") + definition("8l", "File/New/In") +
             definition("8o", "", "out:") + definition("8r", "Recent/a.txt") +
             definition("1m3", "View/Zoom/Out") + definition("0", "File/Save") +
             definition("8z", "View/Zoom") + definition("ax", "File/New"));
    struct Row {
        std::string key;
        std::uint32_t flags;
        std::string ran;
    };
    constexpr std::uint32_t command = NSCommandKeyMask;
    const std::vector<Row> rows{
        {"k", command, "File/New"},
        {"k", command | NSAlphaShiftKeyMask | NSNumericPadKeyMask, "File/New"},
        {"k", command | NSControlKeyMask, ""},
        {"A", command | NSShiftKeyMask, "View/Zoom/In"},
        {"1", command | NSShiftKeyMask, "View/Zoom/Out"},
        {"É", command | NSShiftKeyMask, "File/Save"},
        {"é", command, ""},
        {"c", command, ""},  // disabled
        {"g", command, ""},  // no such submenu
        {"l", command, ""},  // the path goes on after a command
        {"o", command, ""},  // without a path
        {"r", command, ""},  // not filled yet
        {"z", command, ""},  // opens a submenu
        {"", 0, ""},         // the bare digit is no key's
        {"x", NSAlternateKeyMask | command, ""},
    };
    for (const Row& row : rows) {
        Session session(definitions);
        EXPECT_EQ(session.press(row.key, row.flags), !row.ran.empty()) << row.key;
        EXPECT_EQ(session.commands(),
                  row.ran.empty() ? std::vector<std::string>() : std::vector<std::string>{row.ran});
    }
    Session session(definitions);
    EXPECT_TRUE(session.pressButton(2, NSControlKeyMask));
    EXPECT_FALSE(session.pressButton(2, NSControlKeyMask | NSShiftKeyMask));
    EXPECT_FALSE(session.pressButton(3, NSControlKeyMask));
    EXPECT_EQ(session.commands(), std::vector<std::string>{"View/Zoom/Out"});
}

TEST(VelmoraShortcutsTest, AKeyPutsItsCombinationIntoItsItemFirst) {
    Session session(list(definition("8k", "File/New", "other:") + definition("8l", "File/Close") +
                         definition("8q", "File/Gone/Deep")));
    session.itemAt("File/New")->setKeyEquivalent("n");
    session.itemAt("File/Close")->setKeyEquivalent("w");
    const Triggers before = session.triggers();
    EXPECT_FALSE(session.press("q"));
    EXPECT_EQ(session.triggers(), before);
    EXPECT_TRUE(session.press("k"));
    EXPECT_EQ(session.triggers()["File/New"], "8k");
    EXPECT_FALSE(session.press("l"));
    EXPECT_EQ(session.triggers()["File/Close"], "8l");
}

/// A menu that puts other items in the place of its own when it is brought up to date, or only
/// then has any.
class RefreshedMenu final : public NSMenu {
public:
    using NSMenu::NSMenu;
    void update() override {
        if (refreshed_) return;
        refreshed_ = true;
        while (numberOfItems() > 0) removeItemAtIndex(0);
        for (const NSMenuItemRef& item : fresh) addItem(item);
    }
    std::vector<NSMenuItemRef> fresh;

protected:
    void runItem(NSMenuItem& item) override { ran.push_back(item.title()); }

public:
    std::vector<std::string> ran;

private:
    bool refreshed_ = false;
};

TEST(VelmoraShortcutsTest, AnItemThatComesWithTheUpdateOfItsMenuRuns) {
    const auto make = [](const char* title, bool enabled) {
        auto made = NSMenuItem::initWithTitle_action_keyEquivalent(title, Selector(), "");
        made->setEnabled(enabled);
        return made;
    };
    for (const bool present : {false, true}) {
        for (const bool comesBack : {false, true}) {
            Session session(
                list(definition("8u", "Undo/Undo Typing") + definition("8s", "Undo/Odd")));
            const auto menu = std::make_shared<RefreshedMenu>("Undo");
            if (present) menu->addItem(make("Undo Typing", false));
            if (comesBack) menu->fresh = {make("Undo Typing", true)};
            const auto opening = make("Undo", true);
            opening->setSubmenu(menu);
            NSApp().mainMenu()->addItem(opening);
            session.itemAt("File/Save")->setKeyEquivalent("u");
            EXPECT_EQ(session.press("u"), comesBack && !present);
            EXPECT_EQ(menu->ran.size(), comesBack && !present ? 1U : 0U);
        }
    }
}

/// Does what the test says whenever an item changes.
class Watcher final : public NSObject {
public:
    static Class& classObject() {
        static auto* object = &(new Class("ShortcutsTestWatcher", &NSObject::classObject()))
                                   ->method<&Watcher::changed>("changed:");
        return *object;
    }
    Class& isa() const override { return classObject(); }

    static std::shared_ptr<Watcher> make(std::function<void(const NSNotification&)> action) {
        auto watcher = std::make_shared<Watcher>();
        watcher->action_ = std::move(action);
        NSNotificationCenter::defaultCenter().addObserver_selector_name_object(
            watcher, Selector::named("changed:"), NSMenuDidChangeItemNotification, nullptr);
        return watcher;
    }
    void changed(const NSNotification& notification) { action_(notification); }

private:
    std::function<void(const NSNotification&)> action_;
};

TEST(VelmoraShortcutsTest, WhatAHostDoesWhileKeysAreSetDoesNoHarm) {
    const std::string definitions =
        list(definition("8a", "File/New", "new:") + definition("8b", "File/Save", "save:") +
             definition("8i", "View/Zoom/In", "in:"));
    struct Row {
        std::string name;
        std::function<void(Session&)> act;
    };
    const std::vector<Row> rows{
        {"the definitions are activated again",
         [](Session& s) { s.shortcuts->activateSettings(); }},
        {"the list is emptied",
         [](Session& s) {
             s.shortcuts->settings()->array().clear();
             s.shortcuts->activateSettings();
         }},
        {"an item goes",
         [](Session& s) {
             if (s.itemAt("File/New")) s.remove("File/New");
         }},
        {"the menu bar goes", [](Session& s) { s.desktop().setMenuBar(std::nullopt); }},
        {"it throws", [](Session&) { throw std::runtime_error("host"); }},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        Session session(list(""));
        session.writeSettings("EditorShortcuts.plist", definitions);
        session.shortcuts->settings()->initWithContentsOfFile_forceGlobal(
            session.settingsFile("EditorShortcuts.plist"), false);
        bool acted = false;
        auto watcher = Watcher::make([&](const NSNotification&) {
            if (!std::exchange(acted, true)) row.act(session);
        });
        try {
            session.shortcuts->activateSettings();
        } catch (const std::runtime_error&) {
        }
        EXPECT_TRUE(acted);
        watcher.reset();
        // It still works, and the definitions that are left are in force or pending.
        const bool empty = session.shortcuts->settings()->count() == 0;
        session.menu({submenu("File", {item("Save", "save:")})});
        EXPECT_EQ(session.itemAt("File/Save")->keyEquivalent(), empty ? "" : "b");
    }
}

TEST(VelmoraShortcutsTest, AHostThatChangesAnItemWhileItsMenuIsFilledFillsItOnce) {
    Session session(list(definition("8a", "Recent/a.txt", "open:")));
    int changes = 0;
    const NSMenuItemRef recent = session.itemAt("Recent");
    const auto watcher = Watcher::make([&](const NSNotification& notification) {
        if (notification.object != recent->menu() || changes >= 50) return;
        ++changes;
        if (changes < 50) recent->setTitle("Recent " + std::to_string(changes));
    });
    recent->setTitle("Recent Files");
    EXPECT_EQ(session.itemAt(recent->title() + "/a.txt")->keyEquivalent(), "a");
}

TEST(VelmoraShortcutsTest, AChangeOfTheMenusLooksUpWhatIsPendingOnce) {
    struct Row {
        std::string definitions;
        int lookUps;
    };
    const std::string inForce = definition("8k", "File/New", "new:");
    const std::vector<Row> rows{
        {inForce, 0},
        {inForce + definition("8i", "View/Gone", "gone:"), 500},
        {inForce + definition("1m3", "View/Gone", "gone:") + definition("0", "View/Zoom/Out"), 0},
    };
    for (const Row& row : rows) {
        Session session(list(row.definitions));
        const NSMenuItemRef changed = session.itemAt("View/Zoom/In");
        const CountingDesktop counting(session.desktop());
        for (int i = 0; i < 500; ++i) changed->setEnabled(i % 2 != 0);
        EXPECT_EQ(counting.lookUps(), row.lookUps) << row.definitions;
    }
}

TEST(VelmoraShortcutsTest, FindingAShortcutGivesTheFirstItemThatHasIt) {
    Session session(list(definition("8k", "View/Zoom/Out")));
    EXPECT_EQ(session.shortcuts->findShortcut_withModifiers("k", NSCommandKeyMask),
              session.itemAt("View/Zoom/Out"));
    EXPECT_EQ(session.shortcuts->findShortcut_withModifiers("K", NSCommandKeyMask), nullptr);
    EXPECT_EQ(
        session.shortcuts->findShortcut_withModifiers("k", NSCommandKeyMask | NSFunctionKeyMask),
        nullptr);
    EXPECT_EQ(session.shortcuts->findShortcut_withModifiers("", 0), nullptr);
}

}  // namespace
}  // namespace velmora
