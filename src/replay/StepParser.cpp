#include "replay/StepParser.h"

#include <algorithm>

#include "platform/foundation/files/PropertyListFile.h"
#include "replay/HostParser.h"
#include "replay/PanelStepParser.h"
#include "replay/ScenarioTables.h"

namespace velmora {

namespace {

using What = decltype(Statement::what);

constexpr Time shortestStroke = std::chrono::milliseconds(1);

Statement statementOf(const ScenarioLine& line, What what) {
    return {line.number(), line.text(), std::move(what)};
}

/// A statement that is one line.
Statement lineStatement(const ScenarioLine& line, What what) {
    line.end();
    if (line.opensBlock()) line.fail("this statement opens no block");
    return statementOf(line, std::move(what));
}

// --- files
// -----------------------------------------------------------------------------------------

void takeDate(ScenarioLine& line, FileStep& step) {
    if (!line.take("dated")) return;
    const double seconds = line.number("seconds since 1970", 0, 4e9);
    step.date = NSDate{static_cast<std::int64_t>(seconds * 1e9)};
}

Statement parseWrite(ScenarioText& text, ScenarioLine& line) {
    FileStep step;
    step.name = line.word("a file");
    takeDate(line, step);
    step.contents = line.nextIsQuoted() ? line.word("the contents") : text.text();
    return lineStatement(line, std::move(step));
}

Statement parseFileChange(ScenarioLine& line, FileStep::Change change) {
    FileStep step;
    step.change = change;
    step.name = line.word("a file");
    if (change == FileStep::Change::touch) takeDate(line, step);
    return lineStatement(line, std::move(step));
}

Statement parseFault(ScenarioLine& line, FileStep::Change fails, FileStep::Change works) {
    FileStep step;
    step.name = line.word("a file");
    if (line.take("fails")) {
        step.change = fails;
    } else if (fails == FileStep::Change::readingFails && line.take("is forbidden")) {
        step.change = FileStep::Change::readingForbidden;
    } else if (line.take("works")) {
        step.change = works;
    } else {
        line.fail("expected fails or works");
    }
    return lineStatement(line, std::move(step));
}

// --- the user
// --------------------------------------------------------------------------------------

int takeButton(ScenarioLine& line) {
    const std::string name = line.word("a mouse button");
    const auto number = mouseButtonNamed(name);
    if (!number) line.fail(name + " is no mouse button");
    return *number;
}

std::vector<std::uint32_t> takeModifiers(ScenarioLine& line) {
    std::vector<std::uint32_t> flags;
    std::uint32_t flag = 0;
    while (line.takeModifier(flag)) flags.push_back(flag);
    return flags;
}

Statement parseHold(ScenarioLine& line) {
    ModifierStep step{takeModifiers(line), true};
    if (step.flags.empty()) line.fail("expected a modifier key");
    return lineStatement(line, std::move(step));
}

Statement parseMove(ScenarioLine& line) {
    MoveStep step;
    step.relative = line.take("by");
    if (!step.relative && !line.take("to")) line.fail("expected to X Y or by DX DY");
    step.point = line.point();
    if (line.take("over")) step.duration = line.duration();
    return lineStatement(line, step);
}

std::string takeLetters(ScenarioLine& line) {
    std::string letters = line.word("the letters of a stroke");
    if (letters.find_first_not_of("udlr") != std::string::npos) {
        line.fail("the letters of a stroke are u, d, l and r");
    }
    return letters;
}

NSPoint along(char letter, float length) {
    switch (letter) {
        case 'l': return {-length, 0};
        case 'r': return {length, 0};
        case 'd': return {0, -length};
        default: return {0, length};
    }
}

/// [step N] [over N ms], for each letter.
void parseStroke(ScenarioLine& line, const std::string& letters,
                 std::vector<Statement>& statements) {
    float length = 60;
    Time duration = std::chrono::milliseconds(100);
    if (line.take("step")) length = static_cast<float>(line.number("a length", 0, 10'000));
    if (line.take("over")) duration = std::max(line.duration(), shortestStroke);
    line.end();
    if (line.opensBlock()) line.fail("this statement opens no block");
    for (const char letter : letters) {
        statements.push_back({line.number(), std::string("stroke ") + letter,
                              MoveStep{along(letter, length), true, duration}});
    }
}

/// LETTERS with BUTTON [MODIFIERS] [step N] [over N ms]: the whole gesture.
void parseDraw(ScenarioLine& line, std::vector<Statement>& statements) {
    const std::string letters = takeLetters(line);
    if (!line.take("with")) line.fail("expected with BUTTON MODIFIERS");
    const int button = takeButton(line);
    const std::string buttonName = nameOfMouseButton(button);
    const std::vector<std::uint32_t> flags = takeModifiers(line);
    std::string keys;
    for (const std::uint32_t flag : flags) keys += ' ' + namesOfModifiers(flag);
    const auto add = [&](std::string text, What what) {
        statements.push_back({line.number(), std::move(text), std::move(what)});
    };
    if (!flags.empty()) add("hold" + keys, ModifierStep{flags, true});
    add("press " + buttonName, ButtonStep{button, true});
    parseStroke(line, letters, statements);
    add("release " + buttonName, ButtonStep{button, false});
    if (!flags.empty()) add("let go" + keys, ModifierStep{flags, false});
}

/// "PATH", of the menu bar; in row N column "ID", of the menu in that cell.
Statement parseChoose(ScenarioLine& line) {
    std::string path = line.word("a menu path");
    if (line.take("in context menu")) {
        return lineStatement(line, ChooseStep{std::move(path), true});
    }
    auto inCell = parsePlaceInPanel(line, PanelStep::Act::chooseInCell, std::nullopt);
    if (!inCell) return lineStatement(line, ChooseStep{std::move(path)});
    inCell->text = std::move(path);
    return lineStatement(line, std::move(*inCell));
}

Statement parseKey(ScenarioLine& line) {
    KeyStep step;
    const std::string name = line.word("a key");
    const auto named = keyNamed(name);
    if (!named) line.fail(name + " is no key");
    step.key = *named;
    if (line.take("down")) {
        step.up = false;
    } else if (line.take("up")) {
        step.down = false;
    }
    return lineStatement(line, std::move(step));
}

Statement parseScroll(ScenarioLine& line) {
    const NSPoint delta = line.point();
    return lineStatement(line, ScrollStep{delta.x, delta.y});
}

// --- what the host does
// ----------------------------------------------------------------------------

Statement parseItemChange(ScenarioLine& line, MenuStep::Change change) {
    MenuStep step{change, line.word("a menu path"), {}, {}};
    if (change == MenuStep::Change::rename) {
        if (!line.take("to")) line.fail("expected to and the new title");
        step.title = line.word("a title");
    }
    return lineStatement(line, std::move(step));
}

Statement parseMenuChange(ScenarioText& text, ScenarioLine& line, MenuStep::Change change) {
    MenuStep step{change, {}, {}, {}};
    if (change != MenuStep::Change::replaceBar) step.path = line.word("a menu path");
    step.items = parseItems(text, line);
    return statementOf(line, std::move(step));
}

Statement parseWindowChange(ScenarioLine& line, WindowStep::Change change) {
    WindowStep step;
    step.change = change;
    step.window.title = line.word("a window");
    return lineStatement(line, std::move(step));
}

Statement parseProcessEnd(ScenarioLine& line) {
    ProcessStep step;
    if (line.take("end with")) {
        step.end.status = line.integer("an exit status", 0, 255);
    } else if (line.take("do not end")) {
        step.end.kind = ProcessEnd::Kind::goesOn;
    } else if (line.take("do not start")) {
        step.end.kind = ProcessEnd::Kind::doesNotStart;
    } else {
        line.fail("processes: end with N, do not end, do not start");
    }
    return lineStatement(line, step);
}

}  // namespace

bool parseFileStep(ScenarioText& text, ScenarioLine& line, std::vector<Statement>& statements) {
    using Change = FileStep::Change;
    FileStep table;
    if (line.take("file")) {
        statements.push_back(parseWrite(text, line));
    } else if (line.take("preferences")) {
        table.name = preferencesFileName;
        takeDate(line, table);
        table.contents = xmlDataFromPropertyList(parsePreferences(text, line));
        statements.push_back(statementOf(line, std::move(table)));
    } else if (const std::string component = takeComponent(line); !component.empty()) {
        table.name = parseDefinitionFileName(line, component);
        takeDate(line, table);
        table.contents = xmlDataFromPropertyList(parseDefinitions(text, line));
        statements.push_back(statementOf(line, std::move(table)));
    } else if (line.take("remove file")) {
        statements.push_back(parseFileChange(line, Change::remove));
    } else if (line.take("touch file")) {
        statements.push_back(parseFileChange(line, Change::touch));
    } else if (line.take("writing")) {
        statements.push_back(parseFault(line, Change::writingFails, Change::writingWorks));
    } else if (line.take("reading")) {
        statements.push_back(parseFault(line, Change::readingFails, Change::readingWorks));
    } else {
        return false;
    }
    return true;
}

bool parseUserStep(ScenarioLine& line, std::vector<Statement>& statements) {
    if (line.take("stroke")) {
        parseStroke(line, takeLetters(line), statements);
    } else if (line.take("draw")) {
        parseDraw(line, statements);
    } else if (line.take("press")) {
        statements.push_back(lineStatement(line, ButtonStep{takeButton(line), true}));
    } else if (line.take("release")) {
        statements.push_back(lineStatement(line, ButtonStep{takeButton(line), false}));
    } else if (line.take("hold")) {
        statements.push_back(parseHold(line));
    } else if (line.take("let go")) {
        statements.push_back(lineStatement(line, ModifierStep{takeModifiers(line), false}));
    } else if (line.take("move")) {
        statements.push_back(parseMove(line));
    } else if (line.take("key")) {
        statements.push_back(parseKey(line));
    } else if (line.take("scroll")) {
        statements.push_back(parseScroll(line));
    } else if (line.take("wait")) {
        statements.push_back(lineStatement(line, WaitStep{line.duration()}));
    } else if (line.take("choose")) {
        statements.push_back(parseChoose(line));
    } else if (line.take("activate")) {
        statements.push_back(lineStatement(line, ActivationStep{true}));
    } else if (line.take("resign")) {
        statements.push_back(lineStatement(line, ActivationStep{false}));
    } else {
        return false;
    }
    return true;
}

bool parseHostStep(ScenarioText& text, ScenarioLine& line, std::vector<Statement>& statements) {
    using Change = MenuStep::Change;
    if (line.take("rename item")) {
        statements.push_back(parseItemChange(line, Change::rename));
    } else if (line.take("enable item")) {
        statements.push_back(parseItemChange(line, Change::enable));
    } else if (line.take("disable item")) {
        statements.push_back(parseItemChange(line, Change::disable));
    } else if (line.take("remove item")) {
        statements.push_back(parseItemChange(line, Change::remove));
    } else if (line.take("replace menu bar")) {
        statements.push_back(parseMenuChange(text, line, Change::replaceBar));
    } else if (line.take("replace menu")) {
        statements.push_back(parseMenuChange(text, line, Change::replaceItems));
    } else if (line.take("add to menu")) {
        statements.push_back(parseMenuChange(text, line, Change::appendItems));
    } else if (line.take("open window")) {
        WindowStep step;
        step.window = parseWindow(text, line);
        statements.push_back(statementOf(line, std::move(step)));
    } else if (line.take("close window")) {
        statements.push_back(parseWindowChange(line, WindowStep::Change::close));
    } else if (line.take("processes")) {
        statements.push_back(parseProcessEnd(line));
    } else if (line.take("focus window")) {
        statements.push_back(parseWindowChange(line, WindowStep::Change::focus));
    } else {
        return false;
    }
    return true;
}

Time durationOf(const Statement& statement) {
    if (const auto* move = std::get_if<MoveStep>(&statement.what)) return move->duration;
    if (const auto* wait = std::get_if<WaitStep>(&statement.what)) return wait->duration;
    return Time::zero();
}

}  // namespace velmora
