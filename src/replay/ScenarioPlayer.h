#pragma once

#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "platform/headless/HeadlessSession.h"
#include "replay/Scenario.h"

namespace velmora {

/// Plays a scenario: starts its hosts, does what its user does, and looks whether what must hold
/// does.
class ScenarioPlayer {
public:
    explicit ScenarioPlayer(std::string resourceDirectory)
        : session_(std::move(resourceDirectory)) {}

    /// What did not hold, or could not be done.
    struct Fault {
        int line;
        std::string text;
    };

    /// Is called for the desktop that statements are about, with the line of the next one, before
    /// that is performed, and after the last.
    using Watcher = std::function<void(HeadlessDesktop&, int line)>;
    void setWatcher(Watcher watcher) { watcher_ = std::move(watcher); }

    /// To be called once.
    const std::vector<Fault>& play(const Scenario& scenario);

    const Transcript& transcript() const { return session_.transcript(); }

private:
    using Statements = std::vector<Statement>;

    void playAll(const Statements& all);
    void playPart(Statements::const_iterator first, Statements::const_iterator last);
    /// Has these performed one by one before what else is to come.
    void interject(Statements::const_iterator first, Statements::const_iterator last);
    void perform(const Statement& statement);
    void watch(int line);

    void act(const LaunchStep& step);
    void act(const QuitStep& step);
    void act(const InStep& step);
    void act(const ActivationStep& step);
    void act(const ButtonStep& step);
    void act(const ModifierStep& step);
    void act(const MoveStep& step);
    void act(const KeyStep& step);
    void act(const TypeStep& step);
    void act(const FocusTextStep& step);
    void act(const ClosePanelStep& step);
    void act(const ClickButtonStep& step);
    void act(const PanelStep& step);
    void act(const ScrollStep& step);
    void act(const WaitStep& step);
    void act(const ChooseStep& step);
    void act(const FileStep& step);
    void act(const MenuStep& step);
    void act(const WindowStep& step);
    void act(const ProcessStep& step);
    void act(const HappenedExpectation& expected);
    void act(const OrderExpectation& expected);
    void act(const FileExpectation& expected);
    void act(const MenuExpectation& expected);
    void act(const ItemExpectation& expected);
    void act(const KeyWindowExpectation& expected);
    void act(const PanelExpectation& expected);
    void act(const PanelStateExpectation& expected);
    void act(const ButtonExpectation& expected);
    void act(const TraceWindowExpectation& expected);
    void act(const TextExpectation& expected);
    void act(const ScrollExpectation& expected);
    void act(const CursorExpectation& expected);
    void act(const TimeExpectation& expected);

    HeadlessProcess& process() { return *session_.current(); }
    HeadlessDesktop& host() { return process().desktop(); }
    std::string pathOf(const std::string& fileName) const;
    /// The foremost panel, which a click into it makes key.
    HeadlessPanel* clickedPanel();
    NSMenuItemRef itemAt(const std::string& path);
    NSMenuRef menuAt(const std::string& path);
    void expectPresence(Presence wanted, Presence got);
    void fail(const std::string& text);
    void failed(const std::string& wanted, const std::string& got);

    HeadlessSession session_;
    Watcher watcher_;
    std::vector<Fault> faults_;
    /// The statement that is being performed.
    const Statement* statement_ = nullptr;
    /// The process that statements outside `in` are about, or null.
    HeadlessProcess* main_ = nullptr;
    /// Up to where the transcript was looked at, for each kind of entry of each process, and for
    /// all kinds together.
    std::map<std::pair<std::string, std::optional<Transcript::Kind>>, std::size_t> seen_;
};

}  // namespace velmora
