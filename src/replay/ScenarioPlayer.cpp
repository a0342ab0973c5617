#include "replay/ScenarioPlayer.h"

#include <algorithm>
#include <cassert>
#include <cstdint>

#include "platform/appkit/NSApplication.h"
#include "replay/PanelUser.h"

namespace velmora {

const std::vector<ScenarioPlayer::Fault>& ScenarioPlayer::play(const Scenario& scenario) {
    try {
        playAll(scenario.statements);
    } catch (const HeadlessSession::Endless& endless) {
        if (!statement_) statement_ = &scenario.statements.back();
        fail(endless.what());
    }
    return faults_;
}

void ScenarioPlayer::playAll(const Statements& all) {
    // A host's main loop plays what stands between two changes of the hosts that run.
    const auto changesHosts = [](const Statement& statement) {
        return std::holds_alternative<LaunchStep>(statement.what) ||
               std::holds_alternative<QuitStep>(statement.what);
    };
    auto first = all.begin();
    while (first != all.end()) {
        if (changesHosts(*first)) {
            perform(*first);
            ++first;
            continue;
        }
        const auto last = std::find_if(first, all.end(), changesHosts);
        if (main_) {
            const HeadlessProcess::Scope scope(*main_);
            playPart(first, last);
        } else {
            for (; first != last; ++first) perform(*first);
        }
        first = last;
    }
}

void ScenarioPlayer::playPart(Statements::const_iterator first, Statements::const_iterator last) {
    InputQueue& input = session_.input();
    InputQueue::Sources outer = input.exchangeSources({});
    interject(first, last);
    process().run();
    if (last != first) watch((last - 1)->line + 1);
    input.exchangeSources(std::move(outer));
}

void ScenarioPlayer::interject(Statements::const_iterator first, Statements::const_iterator last) {
    session_.input().addSource([this, next = first, last]() mutable -> InputQueue::Action {
        if (next == last) return {};
        const Statement& statement = *next++;
        return [this, &statement] { perform(statement); };
    });
}

void ScenarioPlayer::watch(int line) {
    if (watcher_ && session_.current()) watcher_(host(), line);
}

void ScenarioPlayer::perform(const Statement& statement) {
    watch(statement.line);
    const Statement* outer = std::exchange(statement_, &statement);
    session_.transcript().add(session_.clock().now(), Transcript::Kind::user,
                              session_.current() ? process().name() : std::string(),
                              statement.text);
    std::visit([this](const auto& what) { act(what); }, statement.what);
    statement_ = outer;
}

void ScenarioPlayer::fail(const std::string& text) {
    faults_.push_back({statement_->line, text});
    session_.transcript().add(session_.clock().now(), Transcript::Kind::fault,
                              session_.current() ? process().name() : std::string(),
                              "line " + std::to_string(statement_->line) + ": " + text);
}

// --- hosts
// -----------------------------------------------------------------------------------------

void ScenarioPlayer::act(const LaunchStep& step) {
    main_ = &session_.addProcess(*step.host);
    const HeadlessProcess::Scope scope(*main_);
    // In the order of the user's time, after a wait that stands before it.
    session_.input().then([this] { main_->launch(); });
    main_->run();
}

void ScenarioPlayer::act(const QuitStep& step) {
    const HeadlessProcess* process = session_.processNamed(step.host);
    if (process == main_) main_ = nullptr;
    session_.removeProcess(*process);
}

void ScenarioPlayer::act(const InStep& step) {
    HeadlessProcess* const named = session_.processNamed(step.host);
    assert(named && "the reader refuses a host that does not run");
    HeadlessProcess& other = *named;
    if (&other != session_.current() && session_.isRunning(other)) {
        fail(step.host + " waits further out and cannot go on inside another host");
        return;
    }
    if (&other == session_.current()) {
        // Its loop goes on, whichever it is, with these first.
        interject(step.statements.begin(), step.statements.end());
        return;
    }
    const HeadlessProcess::Scope scope(other);
    playPart(step.statements.begin(), step.statements.end());
}

void ScenarioPlayer::act(const ActivationStep& step) {
    if (step.active) {
        session_.activate(process());
    } else {
        session_.resignActive();
    }
}

// --- the user
// --------------------------------------------------------------------------------------

void ScenarioPlayer::act(const ButtonStep& step) {
    HeadlessUser& user = session_.user();
    if (!(step.press ? user.press(step.button) : user.release(step.button))) {
        fail(nameOfMouseButton(step.button) + (step.press ? " is held already" : " is not held"));
    }
}

void ScenarioPlayer::act(const ModifierStep& step) {
    HeadlessUser& user = session_.user();
    if (step.flags.empty()) {
        const std::uint32_t held = user.modifierFlags();
        for (std::uint32_t flag = 1; flag != 0; flag <<= 1U) {
            if ((held & flag) != 0) user.letGo(flag);
        }
    }
    for (const std::uint32_t flag : step.flags) {
        if (!(step.hold ? user.hold(flag) : user.letGo(flag))) {
            fail(namesOfModifiers(flag) + (step.hold ? " is held already" : " is not held"));
        }
    }
}

void ScenarioPlayer::act(const MoveStep& step) {
    NSPoint to = step.point;
    if (step.relative) {
        const NSPoint here = session_.user().hand();
        to = {here.x + to.x, here.y + to.y};
    }
    session_.user().move(to, step.duration);
    session_.input().pause(step.duration);
}

void ScenarioPlayer::act(const KeyStep& step) {
    if (step.down) session_.user().keyDown(step.key);
    if (step.up) session_.user().keyUp(step.key);
}

void ScenarioPlayer::act(const TypeStep& step) {
    for (const Key& key : step.keys) {
        session_.user().keyDown(key);
        session_.user().keyUp(key);
    }
}

void ScenarioPlayer::act(const FocusTextStep& step) {
    if (!host().focusTextView(step.textView)) fail("there is no text view " + step.textView);
}

HeadlessPanel* ScenarioPlayer::clickedPanel() {
    HeadlessPanel* panel = host().frontPanel();
    if (panel) host().focusPanel(*panel);
    return panel;
}

void ScenarioPlayer::act(const ClosePanelStep& /*step*/) {
    if (HeadlessPanel* panel = clickedPanel()) {
        panel->userCloses();
    } else {
        fail("no panel is shown");
    }
}

void ScenarioPlayer::act(const ClickButtonStep& step) {
    const HeadlessPanel* panel = clickedPanel();
    const NSButtonRef button = panel ? panel->buttonTitled(step.title) : nullptr;
    if (!button) {
        fail("there is no button " + step.title);
    } else if (!button->isEnabled()) {
        fail(step.title + " is disabled");
    } else {
        button->performClick(nullptr);
    }
}

void ScenarioPlayer::act(const PanelStep& step) {
    HeadlessPanel* panel = clickedPanel();
    if (!panel) return fail("no panel is shown");
    const std::string fault = PanelUser(panel->panel()).act(step);
    if (!fault.empty()) return fail(fault);
    // As any button of the mouse, it comes through the application.
    if (step.act == PanelStep::Act::pressInTable) {
        session_.user().click(step.number, panel->window());
    }
}

void ScenarioPlayer::act(const ScrollStep& step) {
    session_.user().scroll(step.deltaX, step.deltaY);
}

void ScenarioPlayer::act(const WaitStep& step) {
    session_.input().pause(step.duration);
    session_.input().then([] {});
}

void ScenarioPlayer::act(const ChooseStep& step) {
    const NSMenuRef menu = step.inContextMenu ? session_.user().contextMenu() : host().menuBar();
    if (!menu) return fail(step.inContextMenu ? "no context menu opens there" : "no menu bar");
    // Opening the menus on the way fills them, so the item is looked for afterwards.
    if (step.inContextMenu) openMenu(*menu);
    for (std::size_t end = step.path.find('/'); end != std::string::npos;
         end = step.path.find('/', end + 1)) {
        const NSMenuItemRef above = menuItemAtPath(*menu, step.path.substr(0, end));
        if (above && above->hasSubmenu()) openMenu(*above->submenu());
    }
    const NSMenuItemRef item = menuItemAtPath(*menu, step.path);
    if (!item || item->hasSubmenu()) {
        fail("there is no item " + step.path);
    } else if (!item->isEnabled()) {
        fail(step.path + " is disabled");
    } else {
        HeadlessUser::clickInMenu();
        item->perform();
    }
}

// --- files
// -----------------------------------------------------------------------------------------

std::string ScenarioPlayer::pathOf(const std::string& fileName) const {
    return fileName.starts_with('/') ? fileName : session_.settingsFile(fileName);
}

void ScenarioPlayer::act(const FileStep& step) {
    using Change = FileStep::Change;
    const std::string path = pathOf(step.name);
    HeadlessFiles& files = session_.files();
    MemoryFileSystem& memory = files.memory();
    bool done = true;
    switch (step.change) {
        case Change::write:
            memory.createDirectories(path.substr(0, path.rfind('/')));
            done = memory.writeAtomically(path, step.contents).has_value();
            break;
        case Change::remove: done = memory.remove(path); break;
        case Change::touch:
            // What is written anew has a new date.
            if (const auto contents = memory.contentsOfFile(path, SIZE_MAX); contents) {
                done = memory.writeAtomically(path, *contents).has_value();
            } else {
                done = false;
            }
            break;
        case Change::writingFails: files.setWriteFails(path, true); break;
        case Change::writingWorks: files.setWriteFails(path, false); break;
        case Change::readingFails: files.setReadFails(path, true); break;
        case Change::readingForbidden: files.setReadForbidden(path, true); break;
        case Change::readingWorks:
            files.setReadFails(path, false);
            files.setReadForbidden(path, false);
            break;
    }
    if (done && step.date) done = memory.setModificationDate(path, *step.date);
    if (!done) fail("this cannot be done to " + path);
}

// --- what the host does
// ----------------------------------------------------------------------------

NSMenuItemRef ScenarioPlayer::itemAt(const std::string& path) {
    return host().menuBar() ? menuItemAtPath(*host().menuBar(), path) : nullptr;
}

NSMenuRef ScenarioPlayer::menuAt(const std::string& path) {
    if (path.empty()) return host().menuBar();
    const NSMenuItemRef item = itemAt(path);
    return item ? item->submenu() : nullptr;
}

void ScenarioPlayer::act(const MenuStep& step) {
    using Change = MenuStep::Change;
    if (step.change == Change::replaceBar) {
        host().setMenuBar(step.items);
        return;
    }
    if (step.change == Change::replaceItems || step.change == Change::appendItems) {
        const auto menu = std::dynamic_pointer_cast<HeadlessMenu>(menuAt(step.path));
        if (!menu) {
            fail("the host has no menu " + step.path);
            return;
        }
        while (step.change == Change::replaceItems && menu->numberOfItems() > 0) {
            menu->removeItemAtIndex(0);
        }
        for (const ItemDescription& item : step.items) menu->append(item);
        return;
    }
    const NSMenuItemRef item = itemAt(step.path);
    if (!item) {
        fail("there is no item " + step.path);
    } else if (step.change == Change::rename) {
        item->setTitle(step.title);
        if (item->hasSubmenu()) item->submenu()->setTitle(step.title);
    } else if (step.change == Change::remove) {
        item->menu()->removeItemAtIndex(item->menu()->indexOfItem(*item));
    } else {
        item->setEnabled(step.change == Change::enable);
    }
}

void ScenarioPlayer::act(const ProcessStep& step) {
    host().setProcessEnd(step.end);
}

void ScenarioPlayer::act(const WindowStep& step) {
    if (step.change == WindowStep::Change::open) {
        host().addWindow(step.window);
        return;
    }
    const auto window = host().windowTitled(step.window.title);
    if (!window) {
        fail("there is no window " + step.window.title);
    } else if (step.change == WindowStep::Change::focus) {
        host().focusWindow(window);
    } else {
        host().closeWindow(*window);
    }
}

}  // namespace velmora
