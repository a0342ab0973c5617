#include "platform/qt/menus/QtMenuPicks.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCursor>
#include <QKeyEvent>
#include <QMenuBar>
#include <QMouseEvent>
#include <QPushButton>
#include <QStyle>
#include <QToolButton>
#include <QWhatsThis>
#include <algorithm>
#include <string>
#include <vector>

#include "platform/appkit/NSMenu.h"
#include "platform/qt/base/QtTitles.h"
#include "platform/qt/menus/QtCommandRunner.h"
#include "platform/qt/menus/QtContextMenus.h"
#include "platform/qt/menus/QtOwnMenus.h"
#include "platform/qt/windows/QtWindows.h"
#include "platform/runtime/NSLog.h"

namespace velmora {

namespace {

/// A QMenu takes a button's release for a pick after that many motions, however short they were.
constexpr int enoughMotions = 6;

/// The menus of a pick: each holds what is on the way to the picked item, and no more.
class PickedMenu final : public NSMenu {
public:
    PickedMenu(bool& isLeftToHost, std::string title)
        : NSMenu(std::move(title)), isLeftToHost_(isLeftToHost) {}

protected:
    void runItem(NSMenuItem& /*item*/) override { isLeftToHost_ = true; }

private:
    bool& isLeftToHost_;
};

QPoint placeIn(const QMouseEvent& event) {
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    return event.position().toPoint();
#else
    return event.pos();
#endif
}

QPoint placeOnScreen(const QMouseEvent& event) {
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    return event.globalPosition().toPoint();
#else
    return event.globalPos();
#endif
}

/// The open menu whose item has opened this one; null for the first.
QMenu* openMenuAbove(const QMenu& menu) {
    const QWidgetList widgets = QApplication::topLevelWidgets();
    for (QWidget* widget : widgets) {
        auto* above = qobject_cast<QMenu*>(widget);
        if (!above || !above->isVisible() || above == &menu) continue;
        const QAction* opener = above->activeAction();
        if (opener && opener->menu() == &menu) return above;
    }
    return nullptr;
}

bool belongsTo(const QAbstractButton& button, const QMenu& menu) {
    if (const auto* push = qobject_cast<const QPushButton*>(&button)) return push->menu() == &menu;
    const auto* tool = qobject_cast<const QToolButton*>(&button);
    if (!tool) return false;
    const QAction* action = tool->defaultAction();
    if (tool->menu() == &menu || (action && action->menu() == &menu)) return true;
    // One that the button has made of its actions.
    return menu.parent() == tool && menu.actions() == tool->actions();
}

/// Whether a menu bar or a button has opened it. The same menu may be a context menu at another
/// time, so a button has to stand beside it.
bool isOpenedByControl(const QMenu& menu) {
    const QRect around = menu.geometry().adjusted(-1, -1, 1, 1);
    const QWidgetList widgets = QApplication::allWidgets();
    return std::any_of(widgets.begin(), widgets.end(), [&](const QWidget* widget) {
        if (!widget->isVisible()) return false;
        if (const auto* bar = qobject_cast<const QMenuBar*>(widget)) {
            const QAction* opener = bar->activeAction();
            return opener && opener->menu() == &menu;
        }
        const auto* button = qobject_cast<const QAbstractButton*>(widget);
        return button && belongsTo(*button, menu) &&
               around.intersects({button->mapToGlobal(QPoint(0, 0)), button->size()});
    });
}

bool isOurs(const QMenu& menu) {
    for (const QWidget* widget = &menu; widget; widget = widget->parentWidget()) {
        if (QtWindows::isOwn(*widget)) return true;
    }
    const QList<QAction*> actions = menu.actions();
    // A menu of the host may hold one.
    return std::all_of(actions.begin(), actions.end(),
                       [](const QAction* action) { return QtOwnMenus::isOwn(*action); });
}

/// Whether the host would run it, and a gesture could be bound to it.
bool canBePicked(const QMenu& menu, const QAction& action) {
    return menu.isEnabled() && menu.isVisible() && menu.windowType() == Qt::Popup &&
           !menu.testAttribute(Qt::WA_DontShowOnScreen) && !QWhatsThis::inWhatsThisMode() &&
           action.isEnabled() && !action.isSeparator() && !action.menu() &&
           !titleFromText(action.text()).empty();
}

/// The items that have opened the menus on the way from the context menu to this one; the context
/// menu in `top`.
std::vector<const QAction*> openersOf(QMenu& menu, QMenu*& top) {
    std::vector<const QAction*> openers;
    top = &menu;
    while (QMenu* above = openMenuAbove(*top)) {
        openers.push_back(above->activeAction());
        top = above;
    }
    std::reverse(openers.begin(), openers.end());
    return openers;
}

/// Closes it with all that is open above it.
void closeUpTo(const QPointer<QMenu>& top) {
    while (top && top->isVisible()) {
        const QPointer<QWidget> popup = QApplication::activePopupWidget();
        if (!popup || popup == top || !popup->close()) {
            if (top) top->close();
            return;
        }
    }
}

/// Offers the pick: true when it has been taken, and the menus are closed.
bool offer(QMenu& menu, const QAction* action) {
    if (!action || !canBePicked(menu, *action)) return false;
    QMenu* top = nullptr;
    std::vector<const QAction*> way = openersOf(menu, top);
    if (isOurs(menu) || isOurs(*top) || isOpenedByControl(*top)) return false;

    const QPointer<QMenu> toClose = top;
    bool isLeftToHost = false;
    auto outermost = std::make_shared<PickedMenu>(isLeftToHost, std::string());
    std::shared_ptr<NSMenu> holder = outermost;
    std::vector<std::string> titles;
    for (const QAction* opener : way) {
        titles.push_back(titleFromText(opener->text()));
        const NSMenuItemRef item = contextMenuItem(*opener, titles);
        holder->addItem(item);
        item->setSubmenu(std::make_shared<PickedMenu>(isLeftToHost, titles.back()));
        holder = item->submenu();
    }
    titles.push_back(titleFromText(action->text()));
    holder->addItem(contextMenuItem(*action, titles));
    holder->performActionForItemAtIndex(0);
    if (isLeftToHost) return false;
    if (NSTraceEnabled()) NSTrace("took the pick of \"Context Menu: " + joinedTitles(titles) + '"');
    closeUpTo(toClose);
    return true;
}

/// The only item that has the letter for its mnemonic: of several, the menu only goes to the next.
const QAction* itemWithLetter(const QMenu& menu, const QKeyEvent& event) {
    const Qt::KeyboardModifiers modifiers = event.modifiers();
    const bool isLetter = modifiers == Qt::NoModifier || modifiers == Qt::AltModifier ||
                          modifiers == Qt::ShiftModifier;
    if (!isLetter || event.text().size() != 1) return nullptr;
    // Such a style has letters search the titles, and run nothing.
    const bool searches = menu.style()->styleHint(QStyle::SH_Menu_KeyboardSearch, nullptr, &menu);
    if (searches && modifiers == Qt::NoModifier) return nullptr;
    const int letter = event.text().at(0).toUpper().unicode();
    const QKeySequence wanted(letter | static_cast<int>(Qt::ALT));
    const QAction* found = nullptr;
    const QList<QAction*> actions = menu.actions();
    for (const QAction* action : actions) {
        if (!action->isVisible() || QKeySequence::mnemonic(action->text()) != wanted) continue;
        if (found) return nullptr;
        found = action;
    }
    return found;
}

const QAction* itemForKey(const QMenu& menu, const QKeyEvent& event) {
    switch (event.key()) {
        case Qt::Key_Space:
            if (!menu.style()->styleHint(QStyle::SH_Menu_SpaceActivatesItem, nullptr, &menu)) break;
            return menu.activeAction();
        case Qt::Key_Return:
        case Qt::Key_Enter: return menu.activeAction();
        default: break;
    }
    return itemWithLetter(menu, event);
}

}  // namespace

bool QtMenuPicks::look(QMenu& menu, const QEvent& event) {
    switch (event.type()) {
        case QEvent::Show:
            opened_ = &menu;
            openedAt_ = QCursor::pos();
            motions_ = 0;
            return false;
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonDblClick: {
            const QPoint place = placeIn(static_cast<const QMouseEvent&>(event));
            pressed_ = menu.rect().contains(place) ? &menu : nullptr;
            return false;
        }
        case QEvent::MouseMove:
            noteMotion(menu, static_cast<const QMouseEvent&>(event));
            return false;
        case QEvent::MouseButtonRelease:
            return takeRelease(menu, static_cast<const QMouseEvent&>(event));
        default: return offer(menu, itemForKey(menu, static_cast<const QKeyEvent&>(event)));
    }
}

void QtMenuPicks::noteMotion(const QMenu& menu, const QMouseEvent& event) {
    if (&menu == opened_) ++motions_;
    if (event.buttons() == Qt::NoButton || !menu.rect().contains(placeIn(event))) return;
    const int way = (placeOnScreen(event) - openedAt_).manhattanLength();
    const bool hasMoved =
        &menu != opened_ || motions_ > enoughMotions || way > QApplication::startDragDistance();
    if (hasMoved) pressed_ = &menu;
}

bool QtMenuPicks::takeRelease(QMenu& menu, const QMouseEvent& event) {
    const QPoint place = placeIn(event);
    // The release may belong to a menu further down, to which this one will hand it on.
    if (!menu.rect().contains(place) || pressed_ != &menu) return false;
    pressed_ = nullptr;
    const QAction* action = menu.actionAt(place);
    return action && action == menu.activeAction() && offer(menu, action);
}

}  // namespace velmora
