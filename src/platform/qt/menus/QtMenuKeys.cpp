#include "platform/qt/menus/QtMenuKeys.h"

#include <private/qguiapplication_p.h>
#include <private/qkeymapper_p.h>
#include <QApplication>
#include <QMenuBar>
#include <QShortcutEvent>
#include <algorithm>

#include "platform/qt/base/QtKeys.h"
#include "platform/qt/menus/QtMenuBars.h"
#include "platform/qt/menus/QtMenuItem.h"
#include "platform/qt/windows/QtModality.h"
#include "platform/qt/windows/QtWindows.h"

namespace velmora {

namespace {

int combined(const QKeySequence& sequence) {
    if (sequence.count() != 1) return 0;
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    return sequence[0].toCombined();
#else
    return sequence[0];
#endif
}

int keyOf(const NSMenuItem& item) {
    return combined(sequenceFor({item.keyEquivalent(), item.keyEquivalentModifierMask()}));
}

QAction* hostActionOf(const NSMenuItem& item) {
    const auto* mirrored = dynamic_cast<const QtMenuItem*>(&item);
    return mirrored ? mirrored->hostAction() : nullptr;
}

/// The combination that the host's action has first, of which its item was deprived if that has
/// another.
QKeySequence hostsOwn(const NSMenuItem& item) {
    const QAction* action = hostActionOf(item);
    return action ? action->shortcut() : QKeySequence();
}

/// The toolkit waits for the rest of several keys in a row.
bool isInSequence() {
    return QGuiApplicationPrivate::instance()->shortcutMap.state() == QKeySequence::PartialMatch;
}

/// What may be text that is being typed.
bool mayBeText(int key) {
    return (key & static_cast<int>(Qt::CTRL | Qt::ALT | Qt::META)) == 0;
}

/// Asks the widget with the keyboard focus whether it wants the key for itself.
bool isWantedByFocus(const QKeyEvent& event) {
    QWidget* focused = QApplication::focusWidget();
    if (!focused) return false;
    QKeyEvent question(QEvent::ShortcutOverride, event.key(), event.QInputEvent::modifiers(),
                       event.nativeScanCode(), event.nativeVirtualKey(), event.nativeModifiers(),
                       event.text(), event.isAutoRepeat());
    question.ignore();
    QCoreApplication::sendEvent(focused, &question);
    return question.isAccepted();
}

/// A window's combinations are also those of its tool windows.
const QWidget* windowOfKeys() {
    const QWidget* window = QApplication::activeWindow();
    while (window && window->windowType() == Qt::Tool && window->parentWidget()) {
        window = window->parentWidget()->window();
    }
    return window;
}

}  // namespace

void QtMenuKeys::collectHolders() {
    menuBars_.checkNewMainMenu();
    const NSMenuRef menu = menuBars_.mainMenu();
    if (menu.get() == menu_ && NSMenu::generation() == generation_) return;
    menu_ = menu.get();
    generation_ = NSMenu::generation();
    holders_.clear();
    if (menu) collectHolders(*menu);
}

void QtMenuKeys::collectHolders(const NSMenu& menu) {
    for (const NSMenuItemRef& item : menu.itemArray()) {
        if (const NSMenuRef submenu = item->submenu()) {
            collectHolders(*submenu);
            continue;
        }
        const bool given = item->hasGivenKeyEquivalent();
        const bool ours = !dynamic_cast<const QtMenuItem*>(item.get());
        if (given || (ours && !item->keyEquivalent().empty())) {
            holders_.push_back({item, keyOf(*item), !given});
        }
    }
}

const QtMenuKeys::Holder* QtMenuKeys::holderOf(int key, Claim claim) const {
    const auto found = std::find_if(holders_.begin(), holders_.end(), [&](const Holder& holder) {
        return holder.key == key && holder.givesWay == (claim == Claim::givingWay) &&
               isInForce(*holder.item);
    });
    return found == holders_.end() ? nullptr : &*found;
}

bool QtMenuKeys::isDeprived(int key) const {
    return std::any_of(holders_.begin(), holders_.end(), [&](const Holder& holder) {
        return holder.key != key && combined(hostsOwn(*holder.item)) == key &&
               isInForce(*holder.item);
    });
}

bool QtMenuKeys::isDeprived(const QObject& receiver, const QShortcutEvent& event) {
    collectHolders();
    return std::any_of(holders_.begin(), holders_.end(), [&](const Holder& holder) {
        return hostActionOf(*holder.item) == &receiver && holder.key != combined(event.key()) &&
               hostsOwn(*holder.item) == event.key();
    });
}

/// An item that still has the combination of which another one was deprived: the toolkit takes both
/// for its owners and would run neither.
NSMenuItemRef QtMenuKeys::otherItemWith(int key, const NSMenu& menu) const {
    for (const NSMenuItemRef& item : menu.itemArray()) {
        if (const NSMenuRef submenu = item->submenu()) {
            if (NSMenuItemRef found = otherItemWith(key, *submenu)) return found;
        } else if (!item->hasGivenKeyEquivalent() && hostActionOf(*item) &&
                   combined(hostsOwn(*item)) == key && isInForce(*item)) {
            return item;
        }
    }
    return nullptr;
}

bool QtMenuKeys::isInForce(const NSMenuItem& item) const {
    const QWidget* window = windowOfKeys();
    if (!window || QtWindows::isOwn(*window) || isBlockedByModal(*window)) return false;
    const QAction* action = hostActionOf(item);
    if (action && action->shortcutContext() == Qt::ApplicationShortcut) return true;
    const QWidget* root = menuBars_.currentRoot();
    const bool isForAll = qobject_cast<const QMenuBar*>(root) && !root->parentWidget() &&
                          !QApplication::activeModalWidget();
    return root && (isForAll || root->window() == window);
}

QtMenuKeys::Answer QtMenuKeys::offer(QKeyEvent& shortcutOverride) {
    collectHolders();
    if (holders_.empty() || isInSequence()) return Answer::notOurs;
    // One press can be several combinations, such as Ctrl+Shift+= and Ctrl++.
    const auto keys = QKeyMapper::possibleKeys(&shortcutOverride);
    for (const int key : keys) {
        if (const Holder* holder = holderOf(key, Claim::given)) {
            return run(*holder, shortcutOverride);
        }
        if (!isDeprived(key)) continue;
        const NSMenuRef mainMenu = menuBars_.mainMenu();
        const NSMenuItemRef other = mainMenu ? otherItemWith(key, *mainMenu) : nullptr;
        const Answer answer = other ? run(other) : Answer::notOurs;
        return answer == Answer::taken ? answer : Answer::plainKey;
    }
    return Answer::notOurs;
}

bool QtMenuKeys::offerLeftOver(QKeyEvent& press) {
    if (std::none_of(holders_.begin(), holders_.end(),
                     [](const Holder& holder) { return holder.givesWay; })) {
        return false;
    }
    const auto keys = QKeyMapper::possibleKeys(&press);
    for (const int key : keys) {
        const Holder* holder = holderOf(key, Claim::givingWay);
        if (holder && !isWantedByFocus(press)) {
            const NSMenuItemRef item = holder->item;
            return run(item) == Answer::taken;
        }
    }
    return false;
}

QtMenuKeys::Answer QtMenuKeys::run(const Holder& holder, QKeyEvent& event) {
    const NSMenuItemRef item = holder.item;
    const int key = holder.key;
    if (mayBeText(key) && isWantedByFocus(event)) return Answer::notOurs;
    const Answer answer = run(item);
    // The item is disabled. What other items have lost to it, they do not get back meanwhile.
    return answer == Answer::notOurs && isDeprived(key) ? Answer::plainKey : answer;
}

QtMenuKeys::Answer QtMenuKeys::run(const NSMenuItemRef& item) {
    if (!item->isEnabled() && item->menu()) item->menu()->update();
    if (!item->menu() || !item->isEnabled()) return Answer::notOurs;
    item->perform();
    return Answer::taken;
}

}  // namespace velmora
