#include "replay/ScenarioParser.h"

#include <gtest/gtest.h>

namespace velmora {
namespace {

std::string reasonFor(const std::string& source) {
    const auto parsed = parseScenario(source);
    const auto* error = std::get_if<ScenarioError>(&parsed);
    return error ? std::to_string(error->line) + ": " + error->reason : "none";
}

/// A scenario in which a host runs, and then these lines from line 4 on.
std::string inHost(const std::string& lines) {
    return "host A {\n}\nlaunch A\n" + lines;
}

TEST(ScenarioParserTest, WhatIsMalformedIsToldByLineAndReason) {
    struct Row {
        std::string source;
        const char* reason;
    };
    const Row rows[] = {
        {"dance\n", "1: unknown statement: dance"},
        {"\n# remark\n  \"dance\"\n", "3: unknown statement: dance"},
        {"press right\n", "1: no host runs that this could be about"},
        {"expect nothing ran\n", "1: no host runs that this could be about"},
        {"launch A\n", "1: no host A was described"},
        {"host\n", "1: expected the host's process name"},
        {"host A {\n", "1: the block that begins here has no end"},
        {"host A {\n} }\n", "2: nothing can follow the end of a block"},
        {"host A { menu bar {\n", "1: a block begins on a line of its own"},
        {"}\n", "1: there is no block that ends here"},
        {"press right }\n", "1: the end of a block stands on a line of its own"},
        {"host A\nhost A\n", "2: there is a host A already"},
        {"host A {\nmenu bar {\nitem \"B\" run b:\n}\n}\n",
         "3: an item has: runs ACTION, key KEY MODIFIERS, disabled, opens enabled, opens disabled"},
        {"host A {\nmenu bar {\nitem \"B\" {\n}\n}\n}\n",
         "3: this holds nothing, so it opens no block"},
        {"host A {\nmenu bar {\n}\nmenu bar {\n}\n}\n", "4: there is a menu bar already"},
        {"host A {\nwindow \"W\" at 1 2 size 3\n}\n", "2: expected a height"},
        {"host A {\nwindow \"W\" at 1 2 size -3 4\n}\n", "2: a width must be between 0 and 100000"},
        {"host A {\nwindow W at x 2 size 3 4\n}\n", "2: expected a coordinate, not x"},
        {"host A {\nwindow W at 1e999 2 size 3 4\n}\n", "2: expected a coordinate, not 1e999"},
        {"host A {\nwindow W at nan 2 size 3 4\n}\n", "2: expected a coordinate, not nan"},
        {inHost("launch A\n"), "4: A runs already"},
        {inHost("quit A\nquit A\n"), "5: A does not run"},
        {inHost("quit A\npress right\n"), "5: no host runs that this could be about"},
        {inHost("in B {\n}\n"), "4: no host B was described"},
        {inHost("in A {\nhost B\n}\n"), "5: unknown statement: host"},
        {inHost("press\n"), "4: expected a mouse button"},
        {inHost("press purple\n"), "4: purple is no mouse button"},
        {inHost("press button2\n"), "4: button2 is no mouse button"},
        {inHost("press right control\n"), "4: did not expect control"},
        {inHost("press right {\n}\n"), "4: this statement opens no block"},
        {inHost("hold\n"), "4: expected a modifier key"},
        {inHost("processes end\n"), "4: processes: end with N, do not end, do not start"},
        {inHost("hold meta\n"), "4: expected a modifier key"},
        {inHost("move 1 2\n"), "4: expected to X Y or by DX DY"},
        {inHost("move to 1 2 over 5\n"), "4: expected ms after the number"},
        {inHost("stroke lux\n"), "4: the letters of a stroke are u, d, l and r"},
        {inHost("draw lu right\n"), "4: expected with BUTTON MODIFIERS"},
        {inHost("key ab\n"), "4: ab is no key"},
        {inHost("wait 600001 ms\n"), "4: a number of milliseconds must be between 0 and 600000"},
        {inHost("wait 600000 ms\nstroke l over 1 ms\n"),
         "5: the scenario takes longer than ten minutes"},
        {inHost("choose \"a\n"), "4: the quoted text has no end"},
        {inHost("choose \"a\\q\"\n"), "4: \\q means nothing in a quoted text"},
        {inHost("choose \"\\x4\"\n"), "4: \\x wants two hexadecimal digits"},
        {inHost("rename item \"a\" \"b\"\n"), "4: expected to and the new title"},
        {inHost("expect\n"), "4: expected an expectation"},
        {inHost("expect ran\n"), "4: expected quoted texts"},
        {inHost("expect ran \"a\" b\n"), "4: did not expect b"},
        {inHost("expect beeps 0\n"), "4: a number of beeps must be between 1 and 1000"},
        {inHost("expect beeps 1.5\n"), "4: a number of beeps must be a whole number"},
        {inHost("expect item \"a\" green\n"),
         "4: there can be expected: enabled, disabled, missing"},
        {"expect file \"a\" equals\n", "1: expected a property list in lines that begin with |"},
        {"expect file \"a\" equals\n| { a = \n", "1: what follows is no property list"},
        {"| text\n", "1: a line of text belongs to no file"},
        {"gestures Editor {\n}\n", "1: expected of HOST or of everyone"},
        {"gestures of A {\nlu \"File\"\n}\n", "2: expected -> after the trigger"},
        {"preferences {\nslot 10 right\n}\n", "2: a slot must be between 0 and 9"},
        {"preferences {\nslot 0 right capslock\n}\n",
         "2: a slot has: shift, control, option, command, function"},
        {"preferences {\nsize 3\n}\n",
         "2: preferences are: slot, gesture size, gesture timeout, make key, feedback, flavor"},
        {"select rows\n", "1: expected rows"},
        {"click row 1 \"Path\"\n", "1: expected column and its identifier"},
        {"drag rows 0 1\n", "1: expected to or onto a row"},
        {"press in table left\n", "1: left is no extra mouse button"},
        {"expect color of cell 0 of a green\n", "1: colours: black, red, \"light grey\""},
        {"writing \"a\" stops\n", "1: expected fails or works"},
        {std::string("da\0nce\n", 7), "1: unknown statement: da"},
    };
    for (const Row& row : rows) EXPECT_STREQ(reasonFor(row.source).c_str(), row.reason);
}

TEST(ScenarioParserTest, SizeAndDepthAreLimited) {
    EXPECT_EQ(reasonFor(std::string(300'000, '#')), "1: the file is larger than 256 KiB");
    std::string deep = "host A {\nmenu bar {\n";
    for (int i = 0; i < 1000; ++i) deep += "menu \"m\" {\n";
    EXPECT_EQ(reasonFor(deep), "21: blocks are nested too deep");
    std::string many = "host A\n";
    for (int i = 0; i < 101; ++i) many += "launch A\nquit A\n";
    EXPECT_EQ(reasonFor(many), "202: more than 100 launches");
}

TEST(ScenarioParserTest, TextsAreTakenAsTheyAreWritten) {
    const auto parsed = parseScenario(
        "file \"a\" dated 2.5 # remark\n"
        "  | first # no remark\n"
        "  |  second\n"
        "  |\n"
        "file \"b\" \"\\x00\\xff \\\"q\\\" \\\\ \\n\"\r\n");
    const auto* scenario = std::get_if<Scenario>(&parsed);
    ASSERT_NE(scenario, nullptr);
    ASSERT_EQ(scenario->statements.size(), 2U);
    const auto& first = std::get<FileStep>(scenario->statements[0].what);
    EXPECT_EQ(first.contents, "first # no remark\n second\n\n");
    EXPECT_EQ(first.date->nanoseconds, 2'500'000'000);
    EXPECT_EQ(scenario->statements[0].text, "file \"a\" dated 2.5");
    const auto& second = std::get<FileStep>(scenario->statements[1].what);
    EXPECT_EQ(second.contents, std::string("\0\xff \"q\" \\ \n", 10));
    EXPECT_EQ(scenario->statements[1].line, 5);
}

}  // namespace
}  // namespace velmora
