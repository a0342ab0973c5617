#include "platform/headless/ScenarioParser.h"

#include <algorithm>
#include <map>

#include "platform/foundation/PropertyListFile.h"
#include "platform/headless/ExpectationParser.h"
#include "platform/headless/HostParser.h"
#include "platform/headless/ScenarioTables.h"
#include "platform/headless/ScenarioText.h"

namespace velmora {

namespace {

constexpr Time longest = std::chrono::minutes(10);
constexpr Time shortestMotion = std::chrono::milliseconds(1);

class Parser {
public:
    explicit Parser(std::string_view source) : text_(source) {}

    Scenario parse() {
        Scenario scenario;
        text_.lines([&](ScenarioLine& line) {
            if (line.take("host")) {
                describeHost(line);
                return;
            }
            statements_ = &scenario.statements;
            if (line.take("launch")) {
                launch(line);
            } else if (line.take("quit")) {
                quit(line);
            } else {
                statement(line);
            }
        });
        return scenario;
    }

private:
    using Change = MenuStep::Change;

    void add(const ScenarioLine& line, decltype(Statement::what) what) {
        add(line, line.text(), std::move(what));
    }
    /// For one of several statements that a line stands for.
    void add(const ScenarioLine& line, std::string text, decltype(Statement::what) what) {
        statements_->push_back({line.number(), std::move(text), std::move(what)});
    }
    /// For statements of one line.
    void addLine(const ScenarioLine& line, decltype(Statement::what) what) {
        line.end();
        if (line.opensBlock()) line.fail("this statement opens no block");
        add(line, std::move(what));
    }
    void takeTime(const ScenarioLine& line, Time duration) {
        total_ += duration;
        if (total_ > longest) line.fail("the scenario takes longer than ten minutes");
    }

    void describeHost(ScenarioLine& line) {
        HostDescription host = parseHost(text_, line);
        const std::string name = host.processName;
        if (!hosts_.emplace(name, std::move(host)).second) {
            line.fail("there is a host " + name + " already");
        }
    }

    std::string knownHost(ScenarioLine& line) {
        std::string name = line.word("a host");
        if (hosts_.find(name) == hosts_.end()) line.fail("no host " + name + " was described");
        return name;
    }

    void launch(ScenarioLine& line) {
        const std::string name = knownHost(line);
        if (!running_.insert({name, true}).second) line.fail(name + " runs already");
        current_ = name;
        addLine(line, LaunchStep{hosts_.at(name)});
    }

    void quit(ScenarioLine& line) {
        const std::string name = knownHost(line);
        if (running_.erase(name) == 0) line.fail(name + " does not run");
        if (current_ == name) current_.clear();
        addLine(line, QuitStep{name});
    }

    void statement(ScenarioLine& line) {
        if (line.take("in")) {
            in(line);
        } else if (!fileStatement(line)) {
            if (line.take("expect")) {
                expectation(line);
                return;
            }
            if (current_.empty()) line.fail("no host runs that this could be about");
            if (!userStatement(line) && !menuStatement(line) && !windowStatement(line)) {
                line.fail("unknown statement: " + line.word("a statement"));
            }
        }
    }

    void in(ScenarioLine& line) {
        const std::string name = knownHost(line);
        if (running_.find(name) == running_.end()) line.fail(name + " does not run");
        const std::string outer = std::exchange(current_, name);
        InStep step{name, {}};
        std::vector<Statement>* const outerStatements =
            std::exchange(statements_, &step.statements);
        text_.block(line, [this](ScenarioLine& inner) { statement(inner); });
        current_ = outer;
        statements_ = outerStatements;
        add(line, std::move(step));
    }

    void expectation(ScenarioLine& line) {
        ParsedExpectation parsed = parseExpectation(text_, line);
        if (parsed.aboutHost && current_.empty()) {
            line.fail("no host runs that this could be about");
        }
        add(line, std::move(parsed.what));
    }

    // --- files ---------------------------------------------------------------------------------

    bool fileStatement(ScenarioLine& line) {
        using FileChange = FileStep::Change;
        FileStep step;
        if (line.take("file")) {
            writeFile(line);
        } else if (line.take("preferences")) {
            step.name = preferencesFileName;
            takeDate(line, step);
            step.contents = xmlDataFromPropertyList(parsePreferences(text_, line));
            add(line, std::move(step));
        } else if (const std::string component = takeComponent(line); !component.empty()) {
            step.name = parseDefinitionFileName(line, component);
            takeDate(line, step);
            step.contents = xmlDataFromPropertyList(parseDefinitions(text_, line));
            add(line, std::move(step));
        } else if (line.take("remove file")) {
            changeFile(line, FileChange::remove);
        } else if (line.take("touch file")) {
            changeFile(line, FileChange::touch);
        } else if (line.take("writing")) {
            switchFault(line, FileChange::writingFails, FileChange::writingWorks);
        } else if (line.take("reading")) {
            switchFault(line, FileChange::readingFails, FileChange::readingWorks);
        } else {
            return false;
        }
        return true;
    }

    void writeFile(ScenarioLine& line) {
        FileStep step;
        step.name = line.word("a file");
        takeDate(line, step);
        if (line.nextIsQuoted()) {
            step.contents = line.word("the contents");
        } else {
            step.contents = text_.text();
        }
        addLine(line, std::move(step));
    }

    void changeFile(ScenarioLine& line, FileStep::Change change) {
        FileStep step;
        step.change = change;
        step.name = line.word("a file");
        if (change == FileStep::Change::touch) takeDate(line, step);
        addLine(line, std::move(step));
    }

    void switchFault(ScenarioLine& line, FileStep::Change fails, FileStep::Change works) {
        FileStep step;
        step.name = line.word("a file");
        const bool failing = line.take("fails");
        if (!failing && !line.take("works")) line.fail("expected fails or works");
        step.change = failing ? fails : works;
        addLine(line, std::move(step));
    }

    void takeDate(ScenarioLine& line, FileStep& step) {
        if (!line.take("dated")) return;
        const double seconds = line.number("seconds since 1970", 0, 4e9);
        step.date = NSDate{static_cast<std::int64_t>(seconds * 1e9)};
    }

    // --- the user ------------------------------------------------------------------------------

    bool userStatement(ScenarioLine& line) {
        if (line.take("press")) {
            addLine(line, ButtonStep{button(line), true});
        } else if (line.take("release")) {
            addLine(line, ButtonStep{button(line), false});
        } else if (line.take("hold")) {
            const auto flags = modifierKeys(line);
            if (flags.empty()) line.fail("expected a modifier key");
            addLine(line, ModifierStep{flags, true});
        } else if (line.take("let go")) {
            const auto flags = modifierKeys(line);
            addLine(line, ModifierStep{flags, false});
        } else if (line.take("move")) {
            move(line);
        } else if (line.take("stroke")) {
            stroke(line, strokeLetters(line));
        } else if (line.take("draw")) {
            draw(line);
        } else if (line.take("key")) {
            key(line);
        } else if (line.take("scroll")) {
            const NSPoint delta = line.point();
            addLine(line, ScrollStep{delta.x, delta.y});
        } else if (line.take("wait")) {
            const Time duration = line.duration();
            takeTime(line, duration);
            addLine(line, WaitStep{duration});
        } else if (line.take("choose")) {
            ChooseStep step{line.word("a menu path")};
            addLine(line, std::move(step));
        } else if (line.take("activate")) {
            addLine(line, ActivationStep{true});
        } else if (line.take("resign")) {
            addLine(line, ActivationStep{false});
        } else {
            return false;
        }
        return true;
    }

    static int button(ScenarioLine& line) {
        const std::string name = line.word("a mouse button");
        const auto number = mouseButtonNamed(name);
        if (!number) line.fail(name + " is no mouse button");
        return *number;
    }

    static std::vector<std::uint32_t> modifierKeys(ScenarioLine& line) {
        std::vector<std::uint32_t> flags;
        std::uint32_t flag = 0;
        while (line.takeModifier(flag)) flags.push_back(flag);
        return flags;
    }

    void move(ScenarioLine& line) {
        MoveStep step;
        step.relative = line.take("by");
        if (!step.relative && !line.take("to")) line.fail("expected to X Y or by DX DY");
        step.point = line.point();
        if (line.take("over")) step.duration = line.duration();
        takeTime(line, step.duration);
        addLine(line, step);
    }

    static std::string strokeLetters(ScenarioLine& line) {
        std::string letters = line.word("the letters of a stroke");
        if (letters.find_first_not_of("udlr") != std::string::npos) {
            line.fail("the letters of a stroke are u, d, l and r");
        }
        return letters;
    }

    /// [step N] [over N ms], for each letter.
    void stroke(ScenarioLine& line, const std::string& letters) {
        float length = 60;
        Time duration = std::chrono::milliseconds(100);
        if (line.take("step")) length = static_cast<float>(line.number("a length", 0, 10'000));
        if (line.take("over")) duration = std::max(line.duration(), shortestMotion);
        for (const char letter : letters) {
            takeTime(line, duration);
            MoveStep step{{0, 0}, true, duration};
            if (letter == 'l') step.point.x = -length;
            if (letter == 'r') step.point.x = length;
            if (letter == 'd') step.point.y = -length;
            if (letter == 'u') step.point.y = length;
            add(line, std::string("stroke ") + letter, step);
        }
        line.end();
        if (line.opensBlock()) line.fail("this statement opens no block");
    }

    /// LETTERS with BUTTON [MODIFIERS] [step N] [over N ms]: the whole gesture.
    void draw(ScenarioLine& line) {
        const std::string letters = strokeLetters(line);
        if (!line.take("with")) line.fail("expected with BUTTON MODIFIERS");
        const int held = button(line);
        const std::string name = nameOfMouseButton(held);
        const std::vector<std::uint32_t> flags = modifierKeys(line);
        std::string keys;
        for (const std::uint32_t flag : flags) keys += ' ' + namesOfModifiers(flag);
        if (!flags.empty()) add(line, "hold" + keys, ModifierStep{flags, true});
        add(line, "press " + name, ButtonStep{held, true});
        stroke(line, letters);
        add(line, "release " + name, ButtonStep{held, false});
        if (!flags.empty()) add(line, "let go" + keys, ModifierStep{flags, false});
    }

    void key(ScenarioLine& line) {
        KeyStep step;
        const std::string name = line.word("a key");
        const auto named = keyNamed(name);
        if (!named) line.fail(name + " is no key");
        step.key = *named;
        if (line.take("down")) step.up = false;
        if (step.up && line.take("up")) step.down = false;
        addLine(line, std::move(step));
    }

    // --- what the host does --------------------------------------------------------------------

    bool menuStatement(ScenarioLine& line) {
        if (line.take("rename item")) {
            MenuStep step{Change::rename, line.word("a menu path"), {}, {}};
            if (!line.take("to")) line.fail("expected to and the new title");
            step.title = line.word("a title");
            addLine(line, std::move(step));
        } else if (line.take("enable item")) {
            changeItem(line, Change::enable);
        } else if (line.take("disable item")) {
            changeItem(line, Change::disable);
        } else if (line.take("remove item")) {
            changeItem(line, Change::remove);
        } else if (line.take("replace menu bar")) {
            changeMenu(line, Change::replaceBar, {});
        } else if (line.take("replace menu")) {
            changeMenu(line, Change::replaceItems, line.word("a menu path"));
        } else if (line.take("add to menu")) {
            changeMenu(line, Change::appendItems, line.word("a menu path"));
        } else {
            return false;
        }
        return true;
    }

    void changeItem(ScenarioLine& line, Change change) {
        MenuStep step{change, line.word("a menu path"), {}, {}};
        addLine(line, std::move(step));
    }

    void changeMenu(ScenarioLine& line, Change change, const std::string& path) {
        add(line, MenuStep{change, path, {}, parseItems(text_, line)});
    }

    bool windowStatement(ScenarioLine& line) {
        WindowStep step;
        if (line.take("open window")) {
            step.window = parseWindow(text_, line);
            add(line, std::move(step));
            return true;
        }
        if (line.take("close window")) {
            step.change = WindowStep::Change::close;
        } else if (line.take("focus window")) {
            step.change = WindowStep::Change::focus;
        } else {
            return false;
        }
        step.window.title = line.word("a window");
        addLine(line, std::move(step));
        return true;
    }

    ScenarioText text_;
    std::map<std::string, HostDescription> hosts_;
    std::map<std::string, bool> running_;
    /// The host that statements are about here; "" when there is none.
    std::string current_;
    std::vector<Statement>* statements_ = nullptr;
    Time total_{};
};

}  // namespace

std::variant<Scenario, ScenarioError> parseScenario(std::string_view source) {
    try {
        return Parser(source).parse();
    } catch (const ScenarioError& error) {
        return error;
    }
}

}  // namespace velmora
