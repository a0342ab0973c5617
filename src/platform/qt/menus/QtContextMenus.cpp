#include "platform/qt/menus/QtContextMenus.h"

#include <QAbstractScrollArea>
#include <QApplication>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QScrollBar>
#include <QTimer>
#include <exception>
#include <utility>

#include "platform/qt/base/QtGuard.h"
#include "platform/qt/base/QtTitles.h"
#include "platform/qt/menus/BorrowedPointer.h"
#include "platform/qt/menus/QtCommandRunner.h"
#include "platform/qt/menus/QtMenu.h"
#include "platform/qt/menus/RightClick.h"
#include "platform/runtime/NSLog.h"
#include "platform/runtime/Raised.h"

namespace velmora {

namespace {

/// A menu that comes later than that, in ms, is none that answers our click. The first menu of a
/// host takes a while.
constexpr int longestWait = 3000;
/// So long, in ms, a host may take until the menu comes that it has posted to itself.
constexpr int patience = 30;
/// Until the next look at a menu that somebody of ours is at work with, in ms.
constexpr int busyDelay = 10;
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

std::string pathOf(const std::vector<std::string>& titles) {
    return "Context Menu: " + joinedTitles(titles);
}

void traceMiss(const std::vector<std::string>& titles, const char* reason) {
    if (NSTraceEnabled()) NSTrace("did not run \"" + pathOf(titles) + "\": " + reason);
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

/// A point of a widget, and whether the same thing lies there still.
struct QtContextMenus::Place {
    Place(QWidget& under, QPoint point)
        : widget(&under), global(point), corner(under.mapToGlobal(QPoint())), scrolled(offset()) {}

    bool operator==(const Place& other) const {
        return widget == other.widget && global == other.global && corner == other.corner &&
               scrolled == other.scrolled;
    }

    bool isAsItWas() const {
        return widget && widget->mapToGlobal(QPoint()) == corner && offset() == scrolled;
    }

    QPointer<QWidget> widget;
    /// On the whole screen, as is the widget's corner.
    QPoint global;
    QPoint corner;
    QPoint scrolled;

private:
    QPoint offset() const {
        const QWidget* parent = widget->parentWidget();
        const auto* area = qobject_cast<const QAbstractScrollArea*>(parent);
        if (!area) return {};
        return {area->horizontalScrollBar()->value(), area->verticalScrollBar()->value()};
    }
};

/// One right click and the menu that it opens, which stays off the screen.
struct QtContextMenus::Opening {
    explicit Opening(const Place& place)
        : pointer(std::make_unique<BorrowedPointer>(place.global)),
          click(*place.widget, place.global) {
        age.start();
    }

    QMenu* menu() const {
        QMenu* first = menus.empty() ? nullptr : menus.front().data();
        return first && first->isVisible() ? first : nullptr;
    }

    /// Lets the host work. What it throws is put by until all is over.
    template <class Work>
    void attempt(Work&& work) {
        try {
            work();
        } catch (...) {
            if (!thrown) thrown = std::current_exception();
        }
    }

    void waitForMenu();
    /// Picks the chosen item, if the menu has it.
    void pickChoice(QMenu& menu);
    void closeMenus();

    /// What opens from here on is the host's business.
    void stopHiding() {
        hiding = false;
        pointer.reset();
        noAnimation.reset();
    }

    /// At the click's place until the menu has been filled.
    std::unique_ptr<BorrowedPointer> pointer;
    RightClick click;
    /// The way to the item that is to run; empty when the menu is only to be looked at.
    Titles choice;
    std::shared_ptr<Copy> copy;
    /// The menu and the submenus that followed.
    std::vector<QPointer<QMenu>> menus;
    bool hiding = true;
    bool clicking = false;
    bool looking = false;
    /// Looked at or chosen from.
    bool used = false;
    bool ended = false;
    std::exception_ptr thrown;
    QElapsedTimer age;
    std::unique_ptr<NoAnimation> noAnimation = std::make_unique<NoAnimation>();
};

/// A copy of a context menu, or of a submenu of one.
class QtContextMenus::Copy final : public NSMenu {
public:
    /// Where the menu comes from.
    struct Source {
        QtContextMenus& owner;
        Place place;
        std::weak_ptr<Opening> opening;
    };

    Copy(Source source, Titles titles)
        : NSMenu(titles.empty() ? std::string() : titles.back()),
          source_(std::move(source)),
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
        if (item.hasSubmenu()) return;
        const std::shared_ptr<Opening> opening = source_.opening.lock();
        if (opening && !opening->ended) {
            opening->choice = titlesOf(item.title());
            opening->used = false;
        } else {
            source_.owner.chooseLater(source_.place, titlesOf(item.title()));
        }
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
        if (menu) {
            auto submenu = std::make_shared<Copy>(source_, titles);
            Q_EMIT menu->aboutToShow();
            submenu->fillFrom(*menu);
            Q_EMIT menu->aboutToHide();
            item->setSubmenu(std::move(submenu));
        }
        return item;
    }

    Source source_;
    /// The way here from the context menu.
    Titles titles_;
};

void QtContextMenus::Opening::waitForMenu() {
    QTimer limit;
    limit.setSingleShot(true);
    limit.start(patience);
    while (menus.empty() && hiding && !thrown && limit.isActive()) {
        attempt([] {
            QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents |
                                            QEventLoop::WaitForMoreEvents);
        });
    }
}

void QtContextMenus::Opening::pickChoice(QMenu& menu) {
    QPointer<QMenu> current = &menu;
    for (std::size_t i = 0; current && i + 1 < choice.size(); ++i) {
        QAction* opener = actionTitled(*current, choice[i], true);
        const QPointer<QMenu> next = opener && opener->isEnabled() ? opener->menu() : nullptr;
        if (next) pick(*current, *opener);
        current = next && next->isVisible() ? next : nullptr;
    }
    QAction* action = current ? actionTitled(*current, choice.back(), false) : nullptr;
    if (!action || !action->isEnabled()) {
        return traceMiss(choice, "the menu has no such item that is enabled");
    }
    // What the command opens is to be seen.
    stopHiding();
    traceRun(pathOf(choice));
    pick(*current, *action);
}

void QtContextMenus::Opening::closeMenus() {
    for (auto menu = menus.rbegin(); menu != menus.rend(); ++menu) {
        // By now it may be open for the user.
        const bool isUnseen = *menu && (*menu)->testAttribute(Qt::WA_DontShowOnScreen);
        if (isUnseen && (*menu)->isVisible()) (*menu)->close();
    }
}

/// What a click has opened, for whoever asks for the same menu before the host goes on: it sees one
/// click, however many definitions a stroke has.
struct QtContextMenus::Recent {
    Place place;
    NSMenuRef copy;
};

QtContextMenus::QtContextMenus() = default;
QtContextMenus::~QtContextMenus() = default;

NSMenuRef QtContextMenus::menuAt(QWidget& widget, QPoint global) {
    const Place place(widget, global);
    if (recent_ && recent_->place == place) return recent_->copy;
    recent_ = std::make_unique<Recent>(Recent{place, std::move(open(place, {})->copy)});
    QMetaObject::invokeMethod(
        &context_, [this] { recent_.reset(); }, Qt::QueuedConnection);
    return recent_->copy;
}

std::shared_ptr<QtContextMenus::Opening> QtContextMenus::open(const Place& place,
                                                              const Titles& choice) {
    // One that waits for a choice has waited in vain.
    if (opening_) end(*opening_);
    const auto opening = std::make_shared<Opening>(place);
    opening_ = opening;
    opening->choice = choice;
    opening->copy = std::make_shared<Copy>(Copy::Source{*this, place, opening}, Titles());
    releaseLater(opening);
    {
        const Raised clicking(opening->clicking);
        opening->attempt([&] { opening->click.press(); });
        opening->attempt([&] { opening->click.release(); });
        opening->waitForMenu();
    }
    // Where the host has waited for the menu to close, all is over by now.
    use(*opening);
    if (!choice.empty() || !opening->menu() || opening->thrown) end(*opening);
    if (!opening->used) opening->copy = nullptr;
    if (opening->thrown) std::rethrow_exception(opening->thrown);
    return opening;
}

void QtContextMenus::use(Opening& opening) {
    QMenu* menu = opening.menu();
    if (!menu || std::exchange(opening.used, true)) return;
    opening.attempt([&] {
        if (!opening.choice.empty()) return opening.pickChoice(*menu);
        const Raised looking(opening.looking);
        opening.copy->fillFrom(*menu);
    });
}

/// A host that answers the press with a loop of its own gets the release from that loop's first
/// pass.
void QtContextMenus::releaseLater(const std::shared_ptr<Opening>& opening) {
    QMetaObject::invokeMethod(
        &context_,
        [opening] {
            if (!opening->clicking) return;
            opening->pointer.reset();
            opening->attempt([&] { opening->click.release(); });
        },
        Qt::QueuedConnection);
}

void QtContextMenus::settleLater(const std::shared_ptr<Opening>& opening) {
    QMetaObject::invokeMethod(
        &context_, [this, opening] { guarded("A context menu", [&] { settle(opening); }); },
        Qt::QueuedConnection);
}

void QtContextMenus::settle(const std::shared_ptr<Opening>& opening) {
    if (opening->ended) return;
    if (opening->looking) {
        QTimer::singleShot(busyDelay, &context_, [this, opening] { settleLater(opening); });
        return;
    }
    opening->attempt([&] { opening->click.release(); });
    use(*opening);
    opening->closeMenus();
    if (opening->clicking) return;
    end(*opening);
    if (opening->thrown) std::rethrow_exception(opening->thrown);
}

void QtContextMenus::end(Opening& opening) {
    if (std::exchange(opening.ended, true)) return;
    opening.stopHiding();
    opening.closeMenus();
    if (opening_.get() == &opening) opening_ = nullptr;
}

void QtContextMenus::keepOffScreen(QWidget& widget) {
    const std::shared_ptr<Opening> opening = opening_;
    auto* menu = qobject_cast<QMenu*>(&widget);
    if (!opening->hiding || widget.windowType() == Qt::ToolTip) return;
    if (opening->menus.empty() && (!menu || opening->age.hasExpired(longestWait))) {
        // Some hosts answer with a dialog, whose menus are for the user.
        opening->stopHiding();
    } else if (menu) {
        opening->pointer.reset();
        opening->menus.emplace_back(menu);
        menu->setAttribute(Qt::WA_DontShowOnScreen);
        // The host may show the same menu again, for the user.
        const auto connection = std::make_shared<QMetaObject::Connection>();
        *connection = QObject::connect(menu, &QMenu::aboutToHide, &context_, [menu, connection] {
            menu->setAttribute(Qt::WA_DontShowOnScreen, false);
            QObject::disconnect(*connection);
        });
    } else {
        return;
    }
    // A host that waits for the choice, or for the dialog, does it in a loop, whose first pass this
    // is.
    settleLater(opening);
}

void QtContextMenus::chooseLater(const Place& place, const Titles& titles) {
    QMetaObject::invokeMethod(
        &context_,
        [this, place, titles] {
            if (place.isAsItWas()) {
                guarded("A context menu", [&] { open(place, titles); });
            } else {
                traceMiss(titles, "what lies under the stroke has moved");
            }
        },
        Qt::QueuedConnection);
}

}  // namespace velmora
