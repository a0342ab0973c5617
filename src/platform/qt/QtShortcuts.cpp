#include "platform/qt/QtShortcuts.h"

#include <QApplication>
#include <QScopedValueRollback>
#include <QShortcutEvent>
#include <algorithm>

#include "platform/qt/FetchWait.h"
#include "platform/qt/QtGuard.h"

namespace velmora {

namespace {

/// A host that puts its own back so often, with no more than the pause in between, keeps it.
constexpr int mostLosses = 20;
constexpr Time pauseBetweenLosses = std::chrono::seconds(1);

bool serves(const QMenuBar* bar, const QWidget& window) {
    // A bar without a window is that of all of them.
    return !bar || !bar->parentWidget() || bar->window() == &window;
}

}  // namespace

QtShortcuts::Record* QtShortcuts::find(const QAction& action) {
    const auto found = records_.find(&action);
    return found != records_.end() && found->second.action ? &found->second : nullptr;
}

KeyEquivalent QtShortcuts::read(const QAction& action) {
    const QList<QKeySequence> present = action.shortcuts();
    const Record* record = find(action);
    if (record && present == (record->givenBack ? record->hosts : record->ours).shortcuts) {
        return record->equivalent;
    }
    return present.isEmpty() ? KeyEquivalent() : keyEquivalentFor(present.front());
}

QtShortcuts::Outcome QtShortcuts::write(QAction& action, const KeyEquivalent& equivalent,
                                        QMenuBar* bar) {
    Record* record = find(action);
    const Look present{action.shortcuts(), action.text()};
    const bool namesShortcut = present.text.contains(QLatin1Char('\t'));
    if (read(action) == equivalent && !(record && namesShortcut)) return Outcome::done;
    const QKeySequence first = sequenceFor(equivalent);
    if (first.isEmpty() && !equivalent.key.empty()) {
        logFailure("A shortcut", "no key gives \"" + equivalent.key + '"');
        return Outcome::done;
    }
    if (!record) {
        removeDeleted();
        record = &records_[&action];
        *record = Record{&action, bar, {}, present, present, isGivenBack(bar)};
    } else if (present.shortcuts != record->ours.shortcuts) {
        if (!record->givenBack && isTooOften(*record)) {
            return record->contested ? Outcome::done : Outcome::leftAlone;
        }
        record->hosts.shortcuts = present.shortcuts;
    }
    if (namesShortcut) record->hosts.text = present.text;
    record->bar = bar;
    record->equivalent = equivalent;
    Look& ours = record->ours = record->hosts;
    if (!ours.shortcuts.isEmpty()) ours.shortcuts.removeFirst();
    ours.shortcuts.removeAll(first);
    if (!first.isEmpty()) ours.shortcuts.prepend(first);
    ours.text = ours.text.section(QLatin1Char('\t'), 0, 0);
    if (record->givenBack) return Outcome::done;
    const QPointer<QAction> kept = &action;
    show(action, record->hosts, record->ours);
    record = kept ? find(*kept) : nullptr;
    if (!record) return Outcome::done;
    record->contested = kept->shortcuts() != record->ours.shortcuts;
    return record->contested ? Outcome::contested : Outcome::done;
}

bool QtShortcuts::isTooOften(Record& record) {
    const Time now = steadyNow();
    if (now > record.lastLost + pauseBetweenLosses) record.lost = 0;
    record.lastLost = now;
    return ++record.lost > mostLosses;
}

bool QtShortcuts::isGivenBack(const QMenuBar* bar) const {
    return quitting_ || std::any_of(closed_.begin(), closed_.end(), [&](const auto& window) {
               return window && serves(bar, *window);
           });
}

void QtShortcuts::show(QAction& action, const Look& from, const Look& to) {
    // The host hears of the change and may do anything, delete the action too.
    const QPointer<QAction> kept = &action;
    const Look look = to;
    const bool namesShortcut = from.text != to.text && action.text() == from.text;
    const QScopedValueRollback<const QAction*> writing(written_, &action);
    action.setShortcuts(look.shortcuts);
    if (kept && namesShortcut) action.setText(look.text);
}

std::vector<QPointer<QAction>> QtShortcuts::actionsOf(const QWidget* window, bool givenBack) {
    removeDeleted();
    std::vector<QPointer<QAction>> actions;
    for (const auto& [action, record] : records_) {
        if (record.givenBack == givenBack && (!window || serves(record.bar, *window))) {
            actions.push_back(record.action);
        }
    }
    return actions;
}

void QtShortcuts::giveBack(const QWidget* window) {
    if (!window) {
        quitting_ = true;
    } else if (std::find(closed_.begin(), closed_.end(), window) == closed_.end()) {
        closed_.emplace_back(window);
    }
    // The host hears of each change: what it does to the next ones is known only then.
    for (const QPointer<QAction>& action : actionsOf(window, false)) {
        Record* record = action ? find(*action) : nullptr;
        if (!record) continue;
        record->givenBack = true;
        if (action->shortcuts() == record->ours.shortcuts) {
            show(*action, record->ours, record->hosts);
        }
    }
}

void QtShortcuts::takeAgain(const QWidget& window) {
    quitting_ = false;
    std::erase_if(closed_, [&](const auto& closed) { return !closed || closed == &window; });
    for (const QPointer<QAction>& action : actionsOf(&window, true)) {
        Record* record = action ? find(*action) : nullptr;
        if (!record) continue;
        record->givenBack = false;
        if (action->shortcuts() == record->hosts.shortcuts) {
            show(*action, record->hosts, record->ours);
        }
    }
}

bool QtShortcuts::settle(const QShortcutEvent& event) {
    const QWidget* window = QApplication::activeWindow();
    // The combinations of a window are also those of its tool windows.
    while (window && window->windowType() == Qt::Tool && window->parentWidget()) {
        window = window->parentWidget()->window();
    }
    if (!event.isAmbiguous() || !window) return false;
    for (const QPointer<QAction>& action : actionsOf(window, false)) {
        const QKeySequence ours = sequenceFor(find(*action)->equivalent);
        if (ours.isEmpty() || ours != event.key() || !action->isEnabled() || !action->isVisible() ||
            action->shortcut() != ours) {
            continue;
        }
        action->trigger();
        return true;
    }
    return false;
}

void QtShortcuts::removeDeleted() {
    std::erase_if(closed_, [](const auto& window) { return !window; });
    std::erase_if(records_, [](const auto& entry) { return !entry.second.action; });
}

}  // namespace velmora
