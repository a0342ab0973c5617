#include "platform/qt/QtContextMenus.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <exception>

#include "platform/foundation/NSLog.h"
#include "platform/qt/QtCommandRunner.h"
#include "platform/qt/QtGuard.h"
#include "platform/qt/QtMenu.h"
#include "platform/qt/QtTitles.h"

namespace velmora {

namespace {

/// A menu that comes later than that, in ms, is none that answers our event. The first menu of a
/// host takes a while.
constexpr int longestWait = 3000;
constexpr std::size_t deepest = 12;

/// Menus that fade or roll in would be seen doing it.
class NoAnimation {
public:
    NoAnimation() { QApplication::setEffectEnabled(Qt::UI_AnimateMenu, false); }
    ~NoAnimation() {
        if (animated_) QApplication::setEffectEnabled(Qt::UI_AnimateMenu, true);
    }
    NoAnimation(const NoAnimation&) = delete;
    NoAnimation& operator=(const NoAnimation&) = delete;

private:
    bool animated_ = QApplication::isEffectEnabled(Qt::UI_AnimateMenu);
};

bool isShown(const QAction& action) {
    return action.isVisible() && (action.isSeparator() || !titleFromText(action.text()).empty());
}

QAction* actionTitled(const QMenu& menu, const std::string& title, bool opensMenu) {
    const QList<QAction*> actions = menu.actions();
    for (QAction* action : actions) {
        if (action->isSeparator() || !action->isVisible()) continue;
        if ((action->menu() != nullptr) == opensMenu && titleFromText(action->text()) == title) {
            return action;
        }
    }
    return nullptr;
}

/// What a person does with the keyboard: goes to the item and presses Return. So that a host which
/// waits for the choice gets it, too.
void pick(QMenu& menu, QAction& action) {
    menu.setActiveAction(&action);
    QKeyEvent press(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
    QCoreApplication::sendEvent(&menu, &press);
}

}  // namespace

NSMenuItemRef contextMenuItem(const QAction& action, const std::vector<std::string>& titles) {
    const QString name = action.objectName();
    NSMenuItemRef item = NSMenuItem::initWithTitle_action_keyEquivalent(
        titles.back(), Selector::named(name.isEmpty() ? joinedTitles(titles) : name.toStdString()),
        "");
    item->setEnabled(action.isEnabled());
    return item;
}

/// One opening of a menu, which stays off the screen.
struct QtContextMenus::Opening {
    explicit Opening(const std::function<void(Opening&, QMenu&)>& whatToDo) : work(whatToDo) {
        age.start();
    }

    /// Does the work, once, when there is a menu, and closes what is open then. Throws nothing: it
    /// may be called by the loop of a host that waits.
    void finish() {
        if (std::exchange(finished, true)) return;
        if (!menus.empty() && menus.front()) {
            try {
                work(*this, *menus.front());
            } catch (...) {
                thrown = std::current_exception();
            }
        }
        stopHiding();
        for (auto menu = menus.rbegin(); menu != menus.rend(); ++menu) {
            if (*menu && (*menu)->isVisible()) (*menu)->close();
        }
    }

    /// What opens from here on is the host's business.
    void stopHiding() {
        hiding = false;
        noAnimation.reset();
    }

    std::function<void(Opening&, QMenu&)> work;
    /// The menu and the submenus that followed.
    std::vector<QPointer<QMenu>> menus;
    bool hiding = true;
    bool finished = false;
    std::exception_ptr thrown;
    QElapsedTimer age;
    std::unique_ptr<NoAnimation> noAnimation = std::make_unique<NoAnimation>();
};

/// A copy of a context menu, or of a submenu of one.
class QtContextMenus::Copy final : public NSMenu {
public:
    Copy(QtContextMenus& owner, QWidget& widget, QPoint global, Titles titles)
        : NSMenu(titles.empty() ? std::string() : titles.back()),
          owner_(owner),
          widget_(&widget),
          global_(global),
          titles_(std::move(titles)) {}

    void fillFrom(const QMenu& menu) {
        const QList<QAction*> actions = menu.actions();
        for (const QAction* action : actions) {
            if (!isShown(*action)) continue;
            addItem(action->isSeparator() ? NSMenuItem::separatorItem() : copyOf(*action));
        }
    }

protected:
    void runItem(NSMenuItem& item) override {
        if (!item.hasSubmenu()) owner_.chooseLater(widget_, global_, titlesOf(item.title()));
    }

private:
    Titles titlesOf(const std::string& title) const {
        Titles titles = titles_;
        titles.push_back(title);
        return titles;
    }

    NSMenuItemRef copyOf(const QAction& action) const {
        const Titles titles = titlesOf(titleFromText(action.text()));
        NSMenuItemRef item = contextMenuItem(action, titles);
        QMenu* menu = titles.size() < deepest ? action.menu() : nullptr;
        if (menu && widget_) {
            auto submenu = std::make_shared<Copy>(owner_, *widget_, global_, titles);
            Q_EMIT menu->aboutToShow();
            submenu->fillFrom(*menu);
            Q_EMIT menu->aboutToHide();
            item->setSubmenu(std::move(submenu));
        }
        return item;
    }

    QtContextMenus& owner_;
    QPointer<QWidget> widget_;
    QPoint global_;
    /// The way here from the context menu.
    Titles titles_;
};

NSMenuRef QtContextMenus::menuAt(QWidget& widget, QPoint global) {
    std::shared_ptr<Copy> copy;
    const QPointer<QWidget> alive = &widget;
    openUnseen(widget, global, [&](Opening& /*opening*/, QMenu& menu) {
        if (!alive) return;
        copy = std::make_shared<Copy>(*this, *alive, global, Titles());
        copy->fillFrom(menu);
    });
    return copy;
}

void QtContextMenus::openUnseen(QWidget& widget, QPoint global,
                                const std::function<void(Opening&, QMenu&)>& work) {
    const auto opening = std::make_shared<Opening>(work);
    const std::shared_ptr<Opening> outer = std::exchange(opening_, opening);
    QContextMenuEvent event(QContextMenuEvent::Mouse, widget.mapFromGlobal(global), global,
                            Qt::NoModifier);
    // An exception of the host comes straight through: between its code and this there is only the
    // delivery of this one event, no loop.
    try {
        QCoreApplication::sendEvent(&widget, &event);
    } catch (...) {
        opening->thrown = std::current_exception();
    }
    // Where the host has waited for the menu to close, all is over by now. Otherwise the submenus
    // open only here.
    opening->finish();
    opening_ = outer;
    if (opening->thrown) std::rethrow_exception(opening->thrown);
}

void QtContextMenus::keepOffScreen(QWidget& widget) {
    const std::shared_ptr<Opening> opening = opening_;
    auto* menu = qobject_cast<QMenu*>(&widget);
    if (!opening->hiding || widget.windowType() == Qt::ToolTip) return;
    if (opening->menus.empty()) {
        // Some hosts answer with a dialog, whose menus are for the user.
        if (!menu || opening->age.hasExpired(longestWait)) {
            opening->stopHiding();
            return;
        }
        // A host that waits for the choice does it in a loop, whose first pass this is.
        QMetaObject::invokeMethod(
            &context_, [opening] { opening->finish(); }, Qt::QueuedConnection);
    }
    if (!menu) return;
    opening->menus.emplace_back(menu);
    menu->setAttribute(Qt::WA_DontShowOnScreen);
    // The host may show the same menu again, for the user.
    const auto connection = std::make_shared<QMetaObject::Connection>();
    *connection = QObject::connect(menu, &QMenu::aboutToHide, &context_, [menu, connection] {
        menu->setAttribute(Qt::WA_DontShowOnScreen, false);
        QObject::disconnect(*connection);
    });
}

void QtContextMenus::chooseLater(const QPointer<QWidget>& widget, QPoint global,
                                 const Titles& titles) {
    QMetaObject::invokeMethod(
        &context_,
        [this, widget, global, titles] {
            if (widget) guarded("A context menu", [&] { choose(*widget, global, titles); });
        },
        Qt::QueuedConnection);
}

void QtContextMenus::choose(QWidget& widget, QPoint global, const Titles& titles) {
    const std::string path = "Context Menu: " + joinedTitles(titles);
    bool chosen = false;
    openUnseen(widget, global, [&](Opening& opening, QMenu& menu) {
        QPointer<QMenu> current = &menu;
        for (std::size_t i = 0; i + 1 < titles.size(); ++i) {
            QAction* opener = actionTitled(*current, titles[i], true);
            if (!opener || !opener->isEnabled()) return;
            const QPointer<QMenu> next = opener->menu();
            pick(*current, *opener);
            if (!next || !next->isVisible()) return;
            current = next;
        }
        QAction* action = actionTitled(*current, titles.back(), false);
        if (!action || !action->isEnabled()) return;
        chosen = true;
        // What the command opens is to be seen.
        opening.stopHiding();
        traceRun(path);
        pick(*current, *action);
    });
    if (!chosen && NSTraceEnabled()) {
        NSTrace("did not run \"" + path + "\": the menu has no such item that is enabled");
    }
}

}  // namespace velmora
