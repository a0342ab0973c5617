#include "replay/ScenarioParser.h"

#include <map>
#include <set>
#include <utility>

#include "replay/ExpectationParser.h"
#include "replay/HostParser.h"
#include "replay/PanelStepParser.h"
#include "replay/ScenarioText.h"
#include "replay/StepParser.h"
#include "replay/TypingParser.h"

namespace velmora {

namespace {

constexpr Time longest = std::chrono::minutes(10);
constexpr int mostLaunches = 100;

class Parser {
public:
    explicit Parser(std::string_view source) : text_(source) {}

    Scenario parse() {
        Scenario scenario;
        text_.lines([&](ScenarioLine& line) {
            if (line.take("host")) {
                describeHost(line);
            } else if (line.take("launch")) {
                launch(line, scenario.statements);
            } else if (line.take("quit")) {
                quit(line, scenario.statements);
            } else {
                statement(line, scenario.statements);
            }
        });
        return scenario;
    }

private:
    using Statements = std::vector<Statement>;

    void describeHost(ScenarioLine& line) {
        auto host = std::make_shared<const HostDescription>(parseHost(text_, line));
        const std::string name = host->processName;
        if (!hosts_.emplace(name, std::move(host)).second) {
            line.fail("there is a host " + name + " already");
        }
    }

    std::string takeHost(ScenarioLine& line) {
        std::string name = line.word("a host");
        if (hosts_.find(name) == hosts_.end()) line.fail("no host " + name + " was described");
        return name;
    }

    void launch(ScenarioLine& line, Statements& statements) {
        current_ = takeHost(line);
        if (!running_.insert(current_).second) line.fail(current_ + " runs already");
        if (++launches_ > mostLaunches) line.fail("more than 100 launches");
        endLine(line);
        statements.push_back({line.number(), line.text(), LaunchStep{hosts_.at(current_)}});
    }

    void quit(ScenarioLine& line, Statements& statements) {
        const std::string name = takeHost(line);
        if (running_.erase(name) == 0) line.fail(name + " does not run");
        if (current_ == name) current_.clear();
        endLine(line);
        statements.push_back({line.number(), line.text(), QuitStep{name}});
    }

    static void endLine(const ScenarioLine& line) {
        line.end();
        if (line.opensBlock()) line.fail("this statement opens no block");
    }

    void statement(ScenarioLine& line, Statements& statements) {
        if (parseFileStep(text_, line, statements)) return;
        if (line.take("in")) {
            in(line, statements);
            return;
        }
        if (line.take("expect")) {
            ParsedExpectation parsed = parseExpectation(text_, line);
            if (parsed.aboutHost) wantHost(line);
            statements.push_back({line.number(), line.text(), std::move(parsed.what)});
            return;
        }
        const std::size_t before = statements.size();
        if (!parsePanelStep(line, statements) && !parseUserStep(line, statements) &&
            !parseTypingStep(line, statements) && !parseHostStep(text_, line, statements)) {
            line.fail("unknown statement: " + line.word("a statement"));
        }
        wantHost(line);
        for (std::size_t i = before; i < statements.size(); ++i) {
            total_ += durationOf(statements[i]);
        }
        if (total_ > longest) line.fail("the scenario takes longer than ten minutes");
    }

    void wantHost(const ScenarioLine& line) const {
        if (current_.empty()) line.fail("no host runs that this could be about");
    }

    void in(ScenarioLine& line, Statements& statements) {
        const std::string name = takeHost(line);
        if (running_.find(name) == running_.end()) line.fail(name + " does not run");
        const std::string outer = std::exchange(current_, name);
        InStep step{name, {}};
        text_.block(line, [&](ScenarioLine& inner) { statement(inner, step.statements); });
        current_ = outer;
        statements.push_back({line.number(), line.text(), std::move(step)});
    }

    ScenarioText text_;
    std::map<std::string, std::shared_ptr<const HostDescription>> hosts_;
    std::set<std::string> running_;
    /// The host that statements are about here; "" when there is none.
    std::string current_;
    Time total_{};
    int launches_ = 0;
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
