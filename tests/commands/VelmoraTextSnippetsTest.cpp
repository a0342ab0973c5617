#include "commands/VelmoraTextSnippets.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/appkit/NSApplication.h"
#include "platform/runtime/Class.h"
#include "support/HeadlessHost.h"

namespace velmora {
namespace {

/// A component and its menu; the key events that it sends are kept.
struct Snippets : HeadlessHost {
    Snippets(const std::string& process, const std::string& definitions, int fixedItems = 2)
        : HeadlessHost(process) {
        for (int i = 0; i < fixedItems; ++i) {
            list->addItem(std::make_shared<NSMenuItem>("fixed", Selector(), ""));
        }
        writeSettings(process + "TextSnippets.plist", definitions);
        component->initForMenu(list);
        current = this;
        const std::vector<Method> witness{methodFor<&Snippets::witness>("sendEvent:")};
        NSApplication::classObject().class_removeMethods(witness);
        NSApplication::classObject().class_addMethods(witness);
    }
    static void witness(NSApplication& /*application*/, const NSEventRef& event) {
        current->sent.push_back(event);
    }
    std::vector<std::string> titles() const {
        std::vector<std::string> titles;
        for (const NSMenuItemRef& item : list->itemArray()) titles.push_back(item->title());
        return titles;
    }
    void choose(const std::string& title) {
        list->performActionForItemAtIndex(list->indexOfItemWithTitle(title));
    }
    std::vector<std::string> keysDown() const {
        std::vector<std::string> keys;
        for (const NSEventRef& event : sent) {
            const NSEvent::Fields& fields = event->fields();
            if (fields.type == NSKeyDown) {
                keys.push_back(fields.characters + '#' + std::to_string(fields.keyCode));
            }
        }
        return keys;
    }

    inline static Snippets* current = nullptr;
    NSMenuRef list = std::make_shared<NSMenu>("Text Snippets");
    std::shared_ptr<VelmoraTextSnippets> component = std::make_shared<VelmoraTextSnippets>();
    std::vector<NSEventRef> sent;
};

using Texts = std::vector<std::string>;

constexpr const char* three =
    "({ Trigger = a; Path = \"one\\ntwo \xF0\x9F\x98\x80\"; }, { Trigger = b; Path = second; }, "
    "{ Trigger = a; Path = third; })";

TEST(VelmoraTextSnippetsTest, TheMenuHoldsTheSnippetsAfterItsFixedItems) {
    Snippets snippets("Editor", three);
    EXPECT_EQ(snippets.titles(), (Texts{"fixed", "fixed", "a", "b", "a"}));
    EXPECT_EQ(snippets.list->itemAtIndex(2)->keyEquivalent(), "");
    const VelmoraSettingRef second = snippets.component->settings()->array()[1];
    snippets.component->settings()->removeObjectsWhere(
        [&](const VelmoraSetting& setting) { return &setting == second.get(); });
    EXPECT_EQ(snippets.titles().size(), 5U) << "until the definitions are activated";
    snippets.choose("b");
    EXPECT_TRUE(snippets.sent.empty());
    snippets.component->storeAndActivateSettings();
    EXPECT_EQ(snippets.titles(), (Texts{"fixed", "fixed", "a", "a"}));
}

TEST(VelmoraTextSnippetsTest, AShortMenuIsNotCleared) {
    Snippets snippets("Editor", "({ Trigger = x; }, { Trigger = \"\"; })", 1);
    EXPECT_EQ(snippets.titles(), (Texts{"fixed", "x", ""}));
    snippets.component->activateSettings();
    EXPECT_EQ(snippets.titles(), (Texts{"fixed", "x", "x", ""}));
}

TEST(VelmoraTextSnippetsTest, OnePairOfEventsHasTheWholeText) {
    Snippets snippets("Editor", three);
    snippets.choose("a");
    ASSERT_EQ(snippets.sent.size(), 2U);
    const std::string text = "one\ntwo \xF0\x9F\x98\x80";
    std::uint32_t type = NSKeyDown;
    for (const NSEventRef& event : snippets.sent) {
        const NSEvent::Fields& fields = event->fields();
        EXPECT_EQ(fields.type, type++);
        EXPECT_EQ(fields.characters, text);
        EXPECT_EQ(fields.charactersIgnoringModifiers, text);
        EXPECT_EQ(fields.keyCode, 0);
        EXPECT_EQ(fields.modifierFlags, 0U);
        EXPECT_EQ(fields.windowNumber, 0);
        EXPECT_FALSE(fields.isARepeat);
    }
}

TEST(VelmoraTextSnippetsTest, AnApplicationThatTakesSingleCharactersGetsThemWithTheirKeyCodes) {
    struct Row {
        const char* process;
        const char* text;
        Texts keysDown;
    };
    const std::vector<Row> rows{
        {"JavaApplicationStub",
         "a\\n \\té\xF0\x9F\x98\x80",
         {"a#0", "\n#36", " #49", "\t#48", "é#0", "\xF0\x9F\x98\x80#0"}},
        {"JavaApplicationStub", "\\r", {"\r#0"}},
        {"JavaApplicationStub", "", {}},
        {"javaapplicationstub", "a b", {"a b#0"}},
        {"Editor", "", {"#0"}},
        {"Editor", " ", {" #0"}},
    };
    for (const Row& row : rows) {
        Snippets snippets(row.process,
                          std::string("({ Trigger = x; Path = \"") + row.text + "\"; })");
        snippets.choose("x");
        EXPECT_EQ(snippets.keysDown(), row.keysDown) << row.process << ' ' << row.text;
        EXPECT_EQ(snippets.sent.size(), 2 * row.keysDown.size());
    }
}

}  // namespace
}  // namespace velmora
