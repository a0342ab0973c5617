#include "replay/PanelStepParser.h"

namespace velmora {

namespace {

using Act = PanelStep::Act;
using Check = PanelStateExpectation::Check;

constexpr int mostRows = 1'000'000;
constexpr int largestTag = 1'000'000;

int takeRow(ScenarioLine& line) {
    return line.integer("a row", 0, mostRows);
}

std::vector<int> takeRows(ScenarioLine& line) {
    std::vector<int> rows;
    for (ScenarioLine ahead = line; !ahead.atEnd(); ahead = line) {
        if (ahead.take("to") || ahead.take("onto")) break;
        rows.push_back(takeRow(line));
    }
    if (rows.empty()) line.fail("expected rows");
    return rows;
}

void takeCell(ScenarioLine& line, PanelStep& step) {
    step.rows = {takeRow(line)};
    if (!line.take("column")) line.fail("expected column and its identifier");
    step.name = line.word("a column's identifier");
}

/// N of "MATRIX"
template <class Statement>
void takeMatrixCell(ScenarioLine& line, Statement& statement) {
    statement.number = line.integer("a cell's tag", -largestTag, largestTag);
    if (!line.take("of")) line.fail("expected of and a matrix");
    statement.name = line.word("a matrix");
}

PanelStep parseDrag(ScenarioLine& line) {
    PanelStep step{Act::dragRows};
    step.rows = takeRows(line);
    step.onto = line.take("onto");
    if (!step.onto && !line.take("to")) line.fail("expected to or onto a row");
    step.number = takeRow(line);
    return step;
}

std::optional<PanelStep> parseStep(ScenarioLine& line) {
    PanelStep step;
    if (line.take("select no row")) {
        step.act = Act::selectRows;
    } else if (line.take("select rows") || line.take("select row")) {
        step.act = Act::selectRows;
        step.rows = takeRows(line);
    } else if (line.take("double-click row")) {
        step.act = Act::doubleClickCell;
        takeCell(line, step);
    } else if (line.take("click row")) {
        step.act = Act::clickCell;
        takeCell(line, step);
    } else if (line.take("click cell")) {
        step.act = Act::clickMatrix;
        takeMatrixCell(line, step);
    } else if (line.take("drag rows") || line.take("drag row")) {
        step = parseDrag(line);
    } else if (line.take("move slider")) {
        step.act = Act::moveSlider;
        step.name = line.word("a slider");
        if (!line.take("to")) line.fail("expected to and a value");
        step.value = line.number("a value", -1e6, 1e6);
    } else if (line.take("move panel to")) {
        step.act = Act::movePanel;
        step.point = line.point();
    } else if (line.take("focus control")) {
        step.act = Act::focus;
        step.name = line.word("a control");
    } else if (line.take("press in table")) {
        step.act = Act::pressInTable;
        const std::string name = line.word("a mouse button");
        const auto button = mouseButtonNamed(name);
        if (!button || *button < 2) line.fail(name + " is no extra mouse button");
        step.number = *button;
    } else {
        return std::nullopt;
    }
    return step;
}

const NSColor* colorNamed(std::string_view name) {
    static const NSColor black = NSColor::blackColor();
    static const NSColor red = NSColor::redColor();
    static const NSColor lightGrey = NSColor::lightGrayColor();
    if (name == "black") return &black;
    if (name == "red") return &red;
    return name == "light grey" ? &lightGrey : nullptr;
}

/// on, off, or a quoted text
std::string takeValue(ScenarioLine& line) {
    return line.word("on, off or a text");
}

}  // namespace

bool parsePanelStep(ScenarioLine& line, std::vector<Statement>& statements) {
    std::optional<PanelStep> step = parseStep(line);
    if (!step) return false;
    line.end();
    if (line.opensBlock()) line.fail("this statement opens no block");
    statements.push_back({line.number(), line.text(), std::move(*step)});
    return true;
}

std::optional<PanelStep> parsePlaceInPanel(ScenarioLine& line, Act inCell,
                                           std::optional<Act> inControl) {
    PanelStep step;
    if (line.take("in row")) {
        step.act = inCell;
        takeCell(line, step);
    } else if (inControl && line.take("in")) {
        step.act = *inControl;
        step.name = line.word("a control");
    } else {
        return std::nullopt;
    }
    return step;
}

std::optional<PanelStateExpectation> parsePanelExpectation(ScenarioLine& line) {
    PanelStateExpectation expected;
    if (line.take("rows")) {
        expected.check = Check::rows;
        expected.wanted = line.quotedTexts();
    } else if (line.take("no rows")) {
        expected.check = Check::rows;
    } else if (line.take("columns")) {
        expected.check = Check::columns;
        expected.wanted = line.quotedTexts();
    } else if (line.take("no selected row")) {
        expected.check = Check::selectedRows;
    } else if (line.take("selected rows") || line.take("selected row")) {
        expected.check = Check::selectedRows;
        for (const int row : takeRows(line)) expected.wanted.push_back(std::to_string(row));
    } else if (line.take("color of cell")) {
        expected.check = Check::color;
        takeMatrixCell(line, expected);
        expected.wanted = {line.word("a colour")};
        if (!colorNamed(expected.wanted[0])) line.fail("colours: black, red, \"light grey\"");
        expected.color = *colorNamed(expected.wanted[0]);
    } else if (line.take("cell")) {
        expected.check = Check::matrixCell;
        takeMatrixCell(line, expected);
        expected.wanted = {takeValue(line)};
    } else if (line.take("control")) {
        expected.check = Check::control;
        expected.name = line.word("a control");
        expected.wanted = {takeValue(line)};
    } else if (line.take("drawer")) {
        expected.check = Check::drawer;
        expected.wanted = {line.word("open or closed")};
    } else {
        return std::nullopt;
    }
    return expected;
}

}  // namespace velmora
