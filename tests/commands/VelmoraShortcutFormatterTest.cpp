#include "commands/VelmoraShortcutFormatter.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "commands/VelmoraTriggers.h"
#include "platform/appkit/NSEvent.h"
#include "platform/appkit/NSMenuItem.h"
#include "platform/foundation/files/Characters.h"
#include "support/HeadlessHost.h"

namespace velmora {
namespace {

constexpr std::uint32_t shift = NSShiftKeyMask;
constexpr std::uint32_t control = NSControlKeyMask;
constexpr std::uint32_t option = NSAlternateKeyMask;
constexpr std::uint32_t command = NSCommandKeyMask;

TEST(VelmoraShortcutFormatterTest, KeysAndButtonsBecomeTriggersWithTheShiftFolded) {
    struct Row {
        std::string key;
        std::uint32_t flags;
        std::string trigger;
    };
    const std::vector<Row> rows{
        {"a", command, "8a"},
        {"A", command | shift, "8A"},
        {"a", command | shift, "Ca"},
        {"1", command | shift, "C1"},
        {"É", command | shift, "8É"},
        {"é", command, "8é"},
        {"ß", command | shift, "Cß"},
        {"\uF704", command | control | NSFunctionKeyMask, "9\uF704"},
        {keyForMouseButton(2), control | option, "3m3"},
        {keyForMouseButton(2), shift, "4m3"},
        {"x", shift | control | option | command, "Fx"},
        {"x", NSAlphaShiftKeyMask | NSNumericPadKeyMask | NSHelpKeyMask, "0x"},
        {"", 0, "0"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(triggerForKey_modifierFlags(row.key, row.flags), row.trigger);
        EXPECT_EQ(keyForTrigger(row.trigger), row.key);
    }
}

TEST(VelmoraShortcutFormatterTest, AMenuItemsKeyEquivalentBecomesATriggerAsItStands) {
    const auto item = NSMenuItem::initWithTitle_action_keyEquivalent("Save", Selector(), "A");
    item->setKeyEquivalentModifierMask(command);
    EXPECT_EQ(triggerForMenuItem(*item), "8A");
    item->setKeyEquivalentModifierMask(command | shift);
    EXPECT_EQ(triggerForMenuItem(*item), "CA");
    item->setKeyEquivalent("");
    item->setKeyEquivalentModifierMask(0);
    EXPECT_EQ(triggerForMenuItem(*item), "0");
}

TEST(VelmoraShortcutFormatterTest, TheDigitGivesTheMaskOfTheMenuItem) {
    const std::vector<std::pair<std::string, std::uint32_t>> rows{
        {"0", 0},
        {"", 0},
        {"1a", control},
        {"2a", option},
        {"4a", shift},
        {"8a", command},
        {"9a", control | command},
        {"Aa", option | command},
        {"Fa", 0x1E0000},
        {"aa", 0},
        {"éa", 0},
    };
    for (const auto& [trigger, mask] : rows) {
        EXPECT_EQ(modifierFlagsForTrigger(trigger), mask) << trigger;
    }
}

TEST(VelmoraShortcutFormatterTest, OnlyALetterMWithADigitIsAMouseButton) {
    for (const char* trigger : {"3m3", "0m12", "Fm0x"}) EXPECT_TRUE(isMouseTrigger(trigger));
    for (const char* trigger : {"", "0", "m3", "3m", "3mx", "3M3", "33m"}) {
        EXPECT_FALSE(isMouseTrigger(trigger)) << trigger;
    }
}

TEST(VelmoraShortcutFormatterTest, TriggersAreShownWithSignsAndNames) {
    const std::vector<std::pair<PropertyList, std::string>> rows{
        {"8a", "⌘A"},
        {"8A", "⇧⌘A"},
        {"CA", "⇧⌘A"},
        {"Fx", "⌃⌥⇧⌘X"},
        {"0", ""},
        {"", ""},
        {PropertyList(80), ""},
        {"9\uF704", "⌃⌘F1"},
        {"0\uF70D", "F10"},
        {"0\uF726", "F35"},
        {"0\uF700", "Up"},
        {"0\uF72C", "Page Up"},
        {"0\uF747", "Mode Switch"},
        {"0\uF748", "\uF748"},
        {"0m3", "M3"},
        {"8 ", "⌘Space"},
        {"8\t", "⌘Tab"},
        {"8\r", "⌘Return"},
        {std::string("8\x03"), "⌘Enter"},
        {std::string("8\x1B"), "⌘Esc"},
        {std::string("8\x7F"), "⌘Delete"},
        {"8é", "⌘É"},
        {"8É", "⇧⌘É"},
        {"8ß", "⌘ß"},
        {"81", "⌘1"},
    };
    const VelmoraShortcutFormatter formatter;
    for (const auto& [trigger, shown] : rows) {
        EXPECT_EQ(formatter.stringForObjectValue(&trigger), shown);
    }
    EXPECT_EQ(formatter.stringForObjectValue(nullptr), "");
}

TEST(VelmoraShortcutFormatterTest, TriggersAreSpokenWithTheKeysOfTheKeyboard) {
    struct Row {
        PropertyList trigger;
        std::string english;
        std::string german;
    };
    const std::vector<Row> rows{
        {"Aj", "Ctrl+Alt+J", "Strg+Alt+J"},
        {"8J", "Ctrl+Shift+J", "Strg+Umschalt+J"},
        {"FJ", "Super+Ctrl+Alt+Shift+J", "Super+Strg+Alt+Umschalt+J"},
        {"0\uF708", "F5", "F5"},
        {"8\uF72C", "Ctrl+Page Up", "Strg+Bild auf"},
        {"0\x7F", "Backspace", "Rücktaste"},
        {"8\x1B", "Ctrl+Esc", "Strg+Esc"},
        {"1m3", "Super+Mouse button 3", "Super+Maustaste 3"},
        {"0", "", ""},
        {PropertyList(80), "", ""},
    };
    for (const char* language : {"en", "de"}) {
        HostDescription description;
        description.languages = {language};
        HeadlessHost host(description);
        for (const Row& row : rows) {
            EXPECT_EQ(VelmoraShortcutFormatter().spokenStringForObjectValue(&row.trigger),
                      *language == 'e' ? row.english : row.german);
        }
    }
}

TEST(VelmoraShortcutFormatterTest, EveryFunctionKeyHasANameOfItsOwn) {
    for (std::size_t i = 0; i < velmoraSpecialKeys.size(); ++i) {
        const PropertyList trigger = "0" + stringWithCharacter(static_cast<char32_t>(0xF700 + i));
        EXPECT_EQ(VelmoraShortcutFormatter().stringForObjectValue(&trigger), velmoraSpecialKeys[i]);
        for (std::size_t j = 0; j < i; ++j) {
            EXPECT_STRNE(velmoraSpecialKeys[i], velmoraSpecialKeys[j]);
        }
    }
    EXPECT_STREQ(velmoraSpecialKeys[0xF727 - 0xF700], "Ins");
    EXPECT_STREQ(velmoraSpecialKeys[0xF746 - 0xF700], "Help");
}

}  // namespace
}  // namespace velmora
