#include "loader/SettingsFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmora {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

std::vector<std::string> problemsOf(const std::string& fileName, const std::string& contents) {
    return checkSettings(SettingsFile::named(fileName), contents).problems;
}

TEST(SettingsFileTest, TheNameTellsComponentAndApplication) {
    using Kind = SettingsFile::Kind;
    struct Row {
        std::string name;
        Kind kind;
        std::string component;
        std::string application;
    };
    const Row rows[] = {
        {"VelmoraDefaults.plist", Kind::Preferences, "", ""},
        {"featherpadGestures.plist", Kind::Definitions, "Gestures", "featherpad"},
        {"VelmoraTextSnippets.plist", Kind::Definitions, "TextSnippets", ""},
        {"GesturesScripts.plist", Kind::Definitions, "Scripts", "Gestures"},
        {"Gestures.plist", Kind::Other, "", ""},
        {"featherpadGestures.plist.old", Kind::Other, "", ""},
        {"notes.txt", Kind::Other, "", ""},
    };
    for (const Row& row : rows) {
        const SettingsFile file = SettingsFile::named(row.name);
        EXPECT_EQ(file.kind, row.kind) << row.name;
        EXPECT_EQ(file.component, row.component) << row.name;
        EXPECT_EQ(file.application, row.application) << row.name;
    }
}

TEST(SettingsFileTest, GoodFilesOfEitherFormHaveNoProblems) {
    EXPECT_THAT(problemsOf("aGestures.plist",
                           "({Path = \"File/New\"; Trigger = udlr; Selector = "
                           "\"\"; isGlobal = 1;}, {Path = Quit; Trigger = d;})"),
                IsEmpty());
    EXPECT_THAT(problemsOf("VelmoraDefaults.plist",
                           "<plist version=\"1.0\"><dict><key>modifiers9</key><integer>31</integer>"
                           "<key>mouseButton0</key><integer>-1</integer>"
                           "<key>isEnabled3</key><true/><key>flavor</key><real>59.9</real>"
                           "</dict></plist>"),
                IsEmpty());
}

TEST(SettingsFileTest, EveryMistakeIsToldWithItsPlace) {
    EXPECT_THAT(problemsOf("aGestures.plist",
                           "({Path = a; Trigger = uu; isGlobal = maybe;}, text, {Trigger = u;"
                           " Colour = red;})"),
                ElementsAre(HasSubstr("definition 1: \"isGlobal\" is neither"),
                            HasSubstr("definition 1: \"uu\" is no gesture"),
                            HasSubstr("definition 2: is no dictionary"),
                            HasSubstr("definition 3: has no \"Path\""),
                            HasSubstr("definition 3: \"Colour\" is no key")));
    EXPECT_THAT(problemsOf("aShortcuts.plist", "({Path = a; Trigger = xa;})"),
                ElementsAre(HasSubstr("\"xa\" is no shortcut")));
    EXPECT_THAT(
        problemsOf("VelmoraDefaults.plist",
                   "{modifiers0 = 32; mouseButton1 = left; flavor = 60; Flavor = 1;}"),
        ElementsAre(HasSubstr("\"modifiers0\" is not from 0 to 31"),
                    HasSubstr("\"mouseButton1\" is no whole number"),
                    HasSubstr("\"flavor\" is no number"), HasSubstr("\"Flavor\" is no key")));
}

TEST(SettingsFileTest, AGestureHasOneToTwentyNineLettersAndNoTwoAlikeInARow) {
    const std::string longest = "ududududududududududududududu";
    ASSERT_EQ(longest.size(), 29U);
    const auto problems = [](const std::string& trigger) {
        return problemsOf("aGestures.plist", "({Path = a; Trigger = \"" + trigger + "\";})").size();
    };
    EXPECT_EQ(problems(longest), 0U);
    for (const std::string& wrong : {longest + "d", std::string(), std::string("uD")}) {
        EXPECT_EQ(problems(wrong), 1U) << wrong;
    }
}

TEST(SettingsFileTest, AFileOfTheWrongKindIsOneProblem) {
    EXPECT_THAT(problemsOf("aGestures.plist", "{flavor = 1;}"), ElementsAre(HasSubstr("no array")));
    EXPECT_THAT(problemsOf("VelmoraDefaults.plist", "({Path = a; Trigger = u;})"),
                ElementsAre(HasSubstr("no dictionary")));
    EXPECT_THAT(problemsOf("aGestures.plist", "<plist><array>"),
                ElementsAre(HasSubstr("no property list")));
    // Without a name to go by, the contents say what they are.
    EXPECT_THAT(problemsOf("some.plist", "({Path = a; Trigger = u;})"), IsEmpty());
    EXPECT_THAT(problemsOf("some.plist", "text"), ElementsAre(HasSubstr("neither")));
}

}  // namespace
}  // namespace velmora
