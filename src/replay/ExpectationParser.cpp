#include "replay/ExpectationParser.h"

#include <array>

#include "platform/foundation/files/PropertyListFile.h"
#include "replay/PanelStepParser.h"
#include "replay/ScenarioTables.h"

namespace velmora {

namespace {

using Kind = Transcript::Kind;

/// The words of an expectation about what happened, and of the one that nothing of the kind did.
struct Happening {
    const char* words;
    const char* none;
    Kind kind;
};
constexpr std::array<Happening, 10> happenings = {{
    {"ran", "nothing ran", Kind::command},
    {"events", "no events", Kind::event},
    {"flags", "no flags", Kind::flags},
    {"motion", "no motion", Kind::motion},
    {"log", "no log", Kind::log},
    {"trace", "no trace", Kind::trace},
    {"opened", "nothing opened", Kind::opened},
    {"started", "nothing started", Kind::started},
    {"made key", "nothing made key", Kind::madeKey},
    {"beeps", "no beep", Kind::beep},
}};

bool parseHappened(ScenarioLine& line, ParsedExpectation& parsed) {
    for (const Happening& happening : happenings) {
        HappenedExpectation expected{happening.kind, {}};
        if (line.take(happening.none)) {
            parsed.what = std::move(expected);
            return true;
        }
        if (!line.take(happening.words)) continue;
        if (happening.kind == Kind::beep) {
            expected.wanted.resize(
                static_cast<std::size_t>(line.integer("a number of beeps", 1, 1000)));
        } else {
            expected.wanted = line.quotedTexts();
            if (expected.wanted.empty()) line.fail("expected quoted texts");
        }
        parsed.what = std::move(expected);
        return true;
    }
    return false;
}

PropertyList parseValue(ScenarioText& text, const ScenarioLine& line) {
    if (!text.textFollows()) line.fail("expected a property list in lines that begin with |");
    const auto value = propertyListFromData(text.text());
    if (!value) line.fail("what follows is no property list");
    return *value;
}

/// A quoted text, or the lines that follow.
std::string parseText(ScenarioText& text, ScenarioLine& line) {
    if (!line.nextIsQuoted() && !text.textFollows()) line.fail("expected a text");
    return line.nextIsQuoted() ? line.word("a text") : text.text();
}

FileExpectation parseFile(ScenarioText& text, ScenarioLine& line) {
    using Check = FileExpectation::Check;
    FileExpectation expected;
    expected.name = line.word("a file");
    if (line.take("missing")) {
        expected.check = Check::missing;
    } else if (line.take("exists")) {
        expected.check = Check::exists;
    } else if (line.take("holds")) {
        expected.check = Check::text;
        expected.text = line.nextIsQuoted() ? line.word("the contents") : text.text();
    } else if (line.take("equals")) {
        expected.check = Check::value;
        expected.value = parseValue(text, line);
    } else if (line.take("read")) {
        expected.check = Check::reads;
        expected.reads = line.integer("how often", 0, 1'000'000);
        if (!line.take("times")) line.fail("expected times");
    } else {
        line.fail("of a file can be expected: missing, exists, holds, equals, read N times");
    }
    return expected;
}

Presence parsePresence(ScenarioLine& line) {
    if (line.take("missing")) return Presence::missing;
    if (line.take("disabled")) return Presence::disabled;
    if (!line.take("enabled")) line.fail("there can be expected: enabled, disabled, missing");
    return Presence::enabled;
}

/// Expectations that compare a file with a table; they read the table's block.
bool parseTable(ScenarioText& text, ScenarioLine& line, ParsedExpectation& parsed) {
    FileExpectation expected;
    if (line.take("preferences")) {
        expected.check = FileExpectation::Check::entries;
        expected.name = preferencesFileName;
        expected.value = parsePreferences(text, line);
    } else if (const std::string component = takeComponent(line); !component.empty()) {
        expected.check = FileExpectation::Check::value;
        expected.name = parseDefinitionFileName(line, component);
        expected.value = parseDefinitions(text, line);
    } else {
        return false;
    }
    parsed.what = std::move(expected);
    parsed.aboutHost = false;
    return true;
}

}  // namespace

ParsedExpectation parseExpectation(ScenarioText& text, ScenarioLine& line) {
    ParsedExpectation parsed;
    if (parseTable(text, line, parsed)) return parsed;
    // Before the lines of the trace, which begin with the same word.
    if (line.take("no trace window")) {
        parsed.what = TraceWindowExpectation{};
    } else if (line.take("trace window")) {
        TraceWindowExpectation expected;
        expected.frame = line.frame();
        if (line.take("alpha")) expected.alpha = line.number("an opacity", 0, 1);
        parsed.what = expected;
    } else if (auto inPanel = parsePanelExpectation(line)) {
        parsed.what = std::move(*inPanel);
    } else if (parseHappened(line, parsed)) {
        // Read to its end.
    } else if (line.take("in order")) {
        parsed.what = OrderExpectation{line.quotedTexts()};
    } else if (line.take("file")) {
        parsed.what = parseFile(text, line);
        parsed.aboutHost = false;
    } else if (line.take("set aside")) {
        FileExpectation expected;
        expected.check = FileExpectation::Check::kept;
        expected.name = line.word("a file");
        parsed.what = std::move(expected);
        parsed.aboutHost = false;
    } else if (line.take("menu bar")) {
        parsed.what = MenuExpectation{{}, line.quotedTexts()};
    } else if (line.take("menu")) {
        MenuExpectation expected{line.word("a menu path"), {}};
        expected.titles = line.quotedTexts();
        parsed.what = std::move(expected);
    } else if (line.take("item")) {
        ItemExpectation expected{{}, line.word("a menu path")};
        expected.presence = parsePresence(line);
        parsed.what = std::move(expected);
    } else if (line.take("button")) {
        ButtonExpectation expected{{}, line.word("a button's title")};
        expected.presence = parsePresence(line);
        parsed.what = std::move(expected);
    } else if (line.take("no key window")) {
        parsed.what = KeyWindowExpectation{};
    } else if (line.take("key window")) {
        parsed.what = KeyWindowExpectation{line.word("a window")};
    } else if (line.take("no panel")) {
        parsed.what = PanelExpectation{};
    } else if (line.take("panel")) {
        PanelExpectation expected{line.word("a panel's title"), {}};
        if (line.take("at")) expected.origin = line.point();
        parsed.what = std::move(expected);
    } else if (line.take("field")) {
        parsed.what = TextExpectation{std::nullopt, parseText(text, line)};
    } else if (line.take("text")) {
        TextExpectation expected{line.word("a text view"), {}};
        expected.text = parseText(text, line);
        parsed.what = std::move(expected);
    } else if (line.take("scroll")) {
        ScrollExpectation expected{line.word("a scroll view"), {}};
        expected.origin = line.point();
        parsed.what = std::move(expected);
    } else if (line.take("no cursor")) {
        parsed.what = CursorExpectation{false};
    } else if (line.take("cursor")) {
        parsed.what = CursorExpectation{true};
    } else if (line.take("time")) {
        parsed.what = TimeExpectation{line.duration()};
        parsed.aboutHost = false;
    } else {
        line.fail("unknown expectation: " + line.word("an expectation"));
    }
    line.end();
    if (line.opensBlock()) line.fail("this expectation opens no block");
    return parsed;
}

}  // namespace velmora
