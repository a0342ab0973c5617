#include "platform/qt/menus/QtShownKeys.h"

#include <QScopedValueRollback>
#include <QScreen>
#include <algorithm>
#include <utility>

#include "platform/appkit/NSMenuItem.h"
#include "platform/qt/base/QtKeys.h"

namespace velmora {

void QtShownKeys::put(QMenu& menu, QAction& action, const NSMenuItem& item) {
    const QKeySequence first =
        sequenceFor({item.keyEquivalent(), item.keyEquivalentModifierMask()});
    const Look hosts{action.shortcuts(), action.text()};
    // Only the first shortcut is the item's key equivalent; the others stay.
    Look ours = hosts;
    if (!ours.shortcuts.isEmpty()) ours.shortcuts.removeFirst();
    ours.shortcuts.removeAll(first);
    if (!first.isEmpty()) ours.shortcuts.prepend(first);
    ours.text = ours.text.section(QLatin1Char('\t'), 0, 0);
    if (ours.shortcuts == hosts.shortcuts && ours.text == hosts.text) return;
    shown_.push_back({&menu, &action, hosts, ours});
    change(action, hosts, ours);
}

void QtShownKeys::keepOnScreen(QMenu& menu) {
    const QScreen* screen = menu.screen();
    if (!screen) return;
    const QRect available = screen->availableGeometry();
    const int beyond = menu.geometry().right() - available.right();
    if (beyond > 0) menu.move(std::max(available.left(), menu.x() - beyond), menu.y());
}

void QtShownKeys::takeOff(const QObject& menu) {
    std::vector<Shown> gone;
    std::erase_if(shown_, [&](const Shown& shown) {
        const bool isGone = shown.menu == &menu;
        if (isGone) gone.push_back(shown);
        return isGone;
    });
    restore(gone);
}

void QtShownKeys::takeOffAll() {
    restore(std::exchange(shown_, {}));
}

void QtShownKeys::restore(const std::vector<Shown>& gone) {
    // Backwards: an action may stand in several menus that are open.
    for (auto shown = gone.rbegin(); shown != gone.rend(); ++shown) {
        if (shown->action) change(*shown->action, shown->ours, shown->hosts);
    }
}

void QtShownKeys::change(QAction& action, const Look& from, const Look& to) {
    // The host hears of the change and may do anything, delete the action too.
    const QPointer<QAction> kept = &action;
    const QScopedValueRollback<const QAction*> changing(changing_, &action);
    if (from.shortcuts != to.shortcuts && action.shortcuts() == from.shortcuts) {
        action.setShortcuts(to.shortcuts);
    }
    if (kept && from.text != to.text && action.text() == from.text) action.setText(to.text);
}

}  // namespace velmora
