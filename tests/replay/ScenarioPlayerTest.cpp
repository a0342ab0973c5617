#include "replay/ScenarioPlayer.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

#include "replay/ScenarioParser.h"
#include "support/TemporaryFolder.h"

namespace velmora {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr const char* editor = R"(host Editor {
    menu bar {
        menu "File" {
            item "Save/All" runs saveAll: key s command
            item "Close" disabled
            menu "Recent" lazy {
                item "a.txt" runs open:
            }
        }
    }
    window "Main" at 0 0 size 100 100
}
launch Editor
)";

/// The faults of a scenario that begins with that editor, each as its line (counted after the
/// editor) and its text; or why it is malformed.
std::vector<std::string> faultsOf(const std::string& lines, const std::string& resources = {}) {
    constexpr int linesBefore = 13;
    const auto parsed = parseScenario(editor + lines);
    if (const auto* error = std::get_if<ScenarioError>(&parsed)) return {error->reason};
    ScenarioPlayer player(resources);
    std::vector<std::string> faults;
    for (const auto& fault : player.play(std::get<Scenario>(parsed))) {
        faults.push_back(std::to_string(fault.line - linesBefore) + ": " + fault.text);
    }
    return faults;
}

TEST(ScenarioPlayerTest, WhatDoesNotHoldIsToldByLineWantedAndGot) {
    EXPECT_THAT(faultsOf("hold command\n"
                         "key s\n"
                         "expect ran \"File/Open\" \"File/Save\"\n"
                         "expect no beep\n"
                         "expect events \"key down s\"\n"),
                ElementsAre("3: expect ran \"File/Open\" \"File/Save\"\n"
                            "    wanted: \"File/Open\" \"File/Save\"\n"
                            "    got:    \"File/Save/All\"",
                            "5: expect events \"key down s\"\n"
                            "    wanted: \"key down s\"\n"
                            "    got:    \"key down s\" \"key up s\""));
}

TEST(ScenarioPlayerTest, EveryKindOfExpectationCanFail) {
    const std::pair<const char*, const char*> rows[] = {
        {"expect ran \"a\"", "nothing"},
        {"expect beeps 2", "0"},
        {"press left\nexpect in order \"beep\"", "\"event left down\""},
        {"expect log \"a\"", "interface/Velmora.plist"},
        {"expect opened \"a\"", "nothing"},
        {"expect started \"a\"", "nothing"},
        {"expect made key \"Main\"", "nothing"},
        {"expect key window \"Other\"", "Main"},
        {"expect no key window", "Main"},
        {"expect cursor", "the host's own cursor"},
        {"expect time 5 ms", "0 ms"},
        {"expect menu \"File\" \"Close\"", "\"Save/All\" \"Close\" \"Recent\""},
        {"expect menu \"Edit\" \"Close\"", "no menu Edit"},
        {"expect item \"File/Close\" enabled", "disabled"},
        {"expect item \"File/Save/All\" missing", "enabled"},
        {"expect item \"File/Recent/a.txt\" enabled", "missing"},
        {"expect file \"a\" exists", "no file /home/user/Library/Application Support/Velmora/a"},
        {"expect set aside \"a\"", "none"},
        {"expect file \"a\" read 1 times", "0"},
        {"file \"a\" \"x\"\nexpect file \"a\" missing", "x"},
        {"file \"a\" \"x\"\nexpect file \"a\" holds \"y\"", "x"},
        {"file \"a\" \"(x)\"\nexpect file \"a\" equals\n| (y)", "\"x\""},
        {"gestures of Editor {\nl -> \"a\" global\n}\nexpect gestures of Editor {\nl -> \"a\"\n}",
         "\"l\" -> \"a\" runs \"\" global"},
        {"preferences {\nslot 0 right\n}\nexpect preferences {\nslot 0 left\n}",
         "mouseButton0 = 1"},
        {"preferences {\nslot 0 right\n}\nexpect preferences {\ngesture size 3\n}",
         "mouseButton0 = 1"},
    };
    for (const auto& [lines, got] : rows) {
        EXPECT_THAT(faultsOf(lines + std::string("\n")), ElementsAre(HasSubstr(got))) << lines;
    }
}

TEST(ScenarioPlayerTest, EveryKindOfExpectationCanHold) {
    EXPECT_THAT(faultsOf(R"(
        expect nothing ran
        expect key window "Main"
        expect no cursor
        expect item "File/Close" disabled
        choose "File/Recent/a.txt"
        expect ran "File/Recent/a.txt"
        rename item "File/Recent" to "Last"
        choose "File/Last/a.txt"
        expect ran "File/Last/a.txt"
        expect menu bar "File"
        add to menu "File" {
            separator
            item "Print"
        }
        enable item "File/Close"
        remove item "File/Save/All"
        expect menu "File" "Close" "Last" "-" "Print"
        expect item "File/Close" enabled
        wait 20 ms
        expect time 20 ms
        file "a"
        | text
        expect file "a" holds
        | text
        gestures of everyone {
            l -> "File/Close" runs close: global
        }
        expect file "VelmoraGestures.plist" equals
        | ({isGlobal = "1"; Path = x;})
        )"),
                ElementsAre(HasSubstr("\"l\" -> \"File/Close\" runs \"close:\" global")));
}

TEST(ScenarioPlayerTest, WhatCannotBeDoneIsAFaultAndTheScenarioGoesOn) {
    EXPECT_THAT(
        faultsOf("press left\n"
                 "press left\n"
                 "release right\n"
                 "choose \"File/Close\"\n"
                 "choose \"File/Open\"\n"
                 "rename item \"File/Open\" to \"x\"\n"
                 "replace menu \"Edit\" {\n}\n"
                 "focus window \"Other\"\n"
                 "remove file \"none\"\n"
                 "let go control\n"
                 "expect events \"left down\"\n"),
        ElementsAre("2: left is held already", "3: right is not held", "4: File/Close is disabled",
                    "5: there is no item File/Open", "6: there is no item File/Open",
                    "7: the host has no menu Edit", "9: there is no window Other",
                    HasSubstr("10: this cannot be done to /home/user/"),
                    "11: control is not held"));
}

TEST(ScenarioPlayerTest, HostsTakeTurnsAndResignWhenAnotherBecomesActive) {
    const std::string source = std::string(editor) + R"(
        host Viewer {
            window "Picture" at 0 0 size 10 10
        }
        launch Viewer
        expect key window "Picture"
        in Editor {
            expect no key window
            key a
            in Viewer {
                key b
            }
            activate
            expect key window "Main"
            expect events "key down a" "key up a"
        }
        expect no key window
        expect no events
        quit Viewer
    )";
    const auto parsed = parseScenario(source);
    ASSERT_TRUE(std::holds_alternative<Scenario>(parsed));
    ScenarioPlayer player("");
    std::vector<std::string> faults;
    for (const auto& fault : player.play(std::get<Scenario>(parsed))) faults.push_back(fault.text);
    EXPECT_THAT(faults,
                ElementsAre("Viewer waits further out and cannot go on inside another host"));
}

TEST(ScenarioPlayerTest, TheTranscriptTellsTheStepsAndWhatCameOfThem) {
    const auto parsed =
        parseScenario(std::string(editor) + "wait 5 ms\nhold command\nkey s\nexpect no log\n");
    ScenarioPlayer player("");
    player.play(std::get<Scenario>(parsed));
    std::ostringstream out;
    player.transcript().print(out);
    EXPECT_THAT(out.str(), HasSubstr("       5 ms  Editor  > hold command\n"
                                     "       5 ms  Editor  event flags command\n"
                                     "       5 ms  Editor  > key s\n"
                                     "       5 ms  Editor  event key down s\n"
                                     "       5 ms  Editor  ran File/Save/All\n"
                                     "       5 ms  Editor  event key up s\n"));
}

/// Resources in which the mnemonic panel has these rows and objects too.
void writePanel(const std::string& folder, const std::string& rows, const std::string& objects) {
    std::filesystem::create_directories(folder + "/interface");
    std::filesystem::copy(VELMORA_SOURCE_DIR "/resources/images", folder + "/images");
    std::ifstream original(VELMORA_SOURCE_DIR "/resources/interface/Velmora.plist");
    std::string text((std::istreambuf_iterator<char>(original)), {});
    const auto insertAfter = [&text](const std::string& place, const std::string& what) {
        ASSERT_NE(text.find(place), std::string::npos);
        text.insert(text.find(place) + place.size(), what);
    };
    insertAfter("mnemonicsTF, define )", rows);
    insertAfter("objects = {", objects);
    std::ofstream(folder + "/interface/Velmora.plist") << text;
}

TEST(ScenarioPlayerTest, TheButtonsOfAPanelAreSeenAndClicked) {
    const TemporaryFolder folder;
    writePanel(folder.path(), ", ( extra ), ( icon )",
               "extra = { class = NSButton; title = \"Help\"; action = \"gotoKorvane:\"; };"
               "icon = { class = VelmoraAnimatedIcon; title = \"Home\"; imageOnly = YES;"
               " imageSize = 64; };");
    EXPECT_THAT(faultsOf("click button \"Home\"\n"
                         "choose \"File/Velmora/Run Mnemonic…\"\n"
                         "expect button \"Home\" enabled\n"
                         "expect button \"Help\" missing\n"
                         "click button \"Home\"\n"
                         "click button \"Help\"\n"
                         "expect opened \"https://velmora.example/\" \"https://korvane.example/\"\n"
                         "expect panel \"Run Mnemonic\"\n"
                         "close panel\n"
                         "expect button \"Home\" missing\n",
                         folder.path()),
                ElementsAre("1: there is no button Home",
                            "4: expect button \"Help\" missing\n"
                            "    wanted: missing\n"
                            "    got:    enabled"));
}

TEST(ScenarioPlayerTest, WhatIsInAPanelIsUsedAndLookedAt) {
    const TemporaryFolder folder;
    writePanel(folder.path(), ", ( boxes, titles ), ( slider, area, box ), ( table )",
               "boxes = { class = NSMatrix; mode = checks; columns = 2; tags = (\"-1\", 5); };"
               "titles = { class = NSMatrix; mode = texts; titles = (First); };"
               "slider = { class = NSSlider; maxValue = 60; };"
               "area = { class = NSTextView; };"
               "box = { class = NSButton; type = switch; title = \"Box\"; };"
               "column = { class = NSTableColumn; identifier = Path; title = \"Menu\"; };"
               "table = { class = NSTableView; columns = (column); };");
    EXPECT_THAT(
        faultsOf("select row 1\n"
                 "choose \"File/Velmora/Run Mnemonic…\"\n"
                 "click cell -1 of boxes\n"
                 "expect cell -1 of boxes on\n"
                 "expect cell 5 of boxes on\n"
                 "expect cell 0 of titles \"First\"\n"
                 "expect color of cell 0 of titles black\n"
                 "move slider slider to 20.5\n"
                 "expect control slider \"20.5\"\n"
                 "click button \"Box\"\n"
                 "expect control box on\n"
                 "type \"some\" in area\n"
                 "key return\n"
                 "type \"more\"\n"
                 "expect control area \"some\\nmore\"\n"
                 "type \"x\" in mnemonicsTF\n"
                 "expect field \"x\"\n"
                 "focus control slider\n"
                 "expect columns \"Menu\"\n"
                 "expect no rows\n"
                 "select no row\n"
                 "expect no selected row\n"
                 "choose \"File/Save\" in row 0 column \"Path\"\n"
                 "drag rows 0 1 to 4\n"
                 "move panel to 3 4\n"
                 "expect panel \"Run Mnemonic\" at 3 4\n"
                 "expect drawer open\n",
                 folder.path()),
        ElementsAre("1: no panel is shown",
                    "5: expect cell 5 of boxes on\n"
                    "    wanted: \"on\"\n"
                    "    got:    \"off\"",
                    "18: slider takes no keys", "23: there is no row 0", "24: there is no row 0",
                    "27: expect drawer open\n"
                    "    wanted: \"open\"\n"
                    "    got:    nothing"));
}

}  // namespace
}  // namespace velmora
