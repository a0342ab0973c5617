#include "platform/qt/QtMenuBars.h"

#include <QApplication>
#include <QLayout>
#include <QMenu>
#include <algorithm>
#include <climits>

#include "platform/foundation/NSNotificationCenter.h"
#include "platform/qt/QtGuard.h"
#include "platform/qt/QtMenu.h"
#include "platform/qt/QtTitles.h"
#include "platform/qt/QtWindows.h"
#include "platform/runtime/Class.h"

namespace velmora {

namespace {

/// How long a menu that was prepared for opening stays so when no command follows, in ms.
constexpr int closeAfter = 100;

/// A host that takes our additions away as soon as they come is left alone after so many times.
constexpr int mostRequests = 20;

/// Fills the host's menus on demand.
class MenuDelegate final : public NSObject {
public:
    static Class& classObject() {
        static auto* object = &(new Class("QtMenuDelegate", &NSObject::classObject()))
                                   ->method<&MenuDelegate::menuNeedsUpdate>("menuNeedsUpdate:");
        return *object;
    }
    Class& isa() const override { return classObject(); }

    void menuNeedsUpdate(NSMenu& menu) { menu.update(); }
};

bool hasMenus(const QMenuBar& bar) {
    const QList<QAction*> actions = bar.actions();
    return std::any_of(actions.begin(), actions.end(), [](const QAction* action) {
        return action->isVisible() && !titleFromText(action->text()).empty();
    });
}

/// How sure it is that the user sees this bar in its window. A bar may have been replaced, or be
/// that of a part of the window; and a user may have hidden the only one.
int claimOf(const QMenuBar& bar, const QWidget& window) {
    const QLayout* layout = window.layout();
    const QWidget* place = layout ? layout->menuBar() : nullptr;
    if (place && (place == &bar || place->isAncestorOf(&bar))) return 3;
    return bar.isVisibleTo(&window) || bar.isNativeMenuBar() ? 2 : 1;
}

void postAddedLeaves(NSMenu& menu) {
    for (int i = 0; i < menu.numberOfItems(); ++i) {
        const NSMenuItemRef item = menu.itemAtIndex(i);
        if (const NSMenuRef submenu = item->submenu()) {
            postAddedLeaves(*submenu);
        } else {
            NSNotificationCenter::defaultCenter().postNotification(
                {NSMenuDidAddItemNotification, &menu, i});
        }
    }
}

}  // namespace

QtMenuBars::QtMenuBars(QtWindows& windows)
    : windows_(windows),
      runner_(*this, windows),
      keys_(*this),
      delegate_(std::make_shared<MenuDelegate>()) {
    closer_.setSingleShot(true);
    closer_.setInterval(closeAfter);
    QObject::connect(&closer_, &QTimer::timeout, &context_, [this] { closeOpened(); });
}

QtMenuBars::~QtMenuBars() {
    for (const auto& [widget, menu] : mirrors_) menu->detach();
}

NSMenuRef QtMenuBars::mainMenu() {
    QMenuBar* bar = currentBar();
    if (!bar) return nullptr;
    std::shared_ptr<QtMenu> mirror = mirrorOf(*bar);
    if (!hadMain_) {
        hadMain_ = true;
        lastMain_ = bar;
    } else if (lastMain_ != bar) {
        scheduleCheck();
    }
    for (const NSMenuItemRef& item : mirror->itemArray()) {
        if (auto* menu = dynamic_cast<QtMenu*>(item->submenu().get())) menu->adoptOwnSubmenus();
    }
    return mirror;
}

QMenuBar* QtMenuBars::currentBar() {
    findBars();
    std::erase_if(bars_, [](const Bar& known) { return !known.bar; });
    QMenuBar* best = nullptr;
    int bestRank = INT_MAX;
    for (const Bar& known : bars_) {
        QWidget* window = known.bar->window();
        const int rank = windows_.activationRank(*window);
        if ((best && rank >= bestRank) || !window->isVisible() || QtWindows::isOwn(*window)) {
            continue;
        }
        if (QMenuBar* bar = barOf(*window)) {
            best = bar;
            bestRank = rank;
        }
    }
    if (best) return best;
    // One for the whole application, where the desktop shows it.
    for (const Bar& known : bars_) {
        if (!known.bar->parentWidget() && known.bar->isNativeMenuBar() && hasMenus(*known.bar)) {
            return known.bar;
        }
    }
    return nullptr;
}

void QtMenuBars::findBars() {
    if (foundBars_) return;
    foundBars_ = true;
    const QWidgetList widgets = QApplication::allWidgets();
    for (QWidget* widget : widgets) {
        if (auto* bar = qobject_cast<QMenuBar*>(widget)) learn(*bar);
    }
}

void QtMenuBars::learn(QMenuBar& bar) {
    const bool known = std::any_of(bars_.begin(), bars_.end(),
                                   [&](const Bar& candidate) { return candidate.bar == &bar; });
    if (!known) bars_.push_back({&bar, nullptr, 0});
}

QMenuBar* QtMenuBars::barOf(const QWidget& window) {
    QMenuBar* best = nullptr;
    int bestClaim = 0;
    for (const Bar& known : bars_) {
        if (!known.bar || known.bar->window() != &window || !hasMenus(*known.bar)) continue;
        const int claim = claimOf(*known.bar, window);
        if (claim <= bestClaim) continue;
        best = known.bar;
        bestClaim = claim;
    }
    return best;
}

std::shared_ptr<QtMenu> QtMenuBars::mirrorOf(QMenuBar& bar) {
    learn(bar);
    const auto known = std::find_if(bars_.begin(), bars_.end(),
                                    [&](const Bar& candidate) { return candidate.bar == &bar; });
    if (!known->mirror) {
        known->mirror = std::make_shared<QtMenu>(*this, bar, std::string(), 0);
        known->mirror->markDirty();
    }
    std::shared_ptr<QtMenu> mirror = known->mirror;
    bringUpToDate();
    return mirror;
}

void QtMenuBars::add(QtMenu& menu, const QObject* widget) {
    mirrors_.emplace(widget, &menu);
}

void QtMenuBars::remove(QtMenu& menu, const QObject* widget) {
    const auto [first, last] = mirrors_.equal_range(widget);
    const auto found =
        std::find_if(first, last, [&](const auto& entry) { return entry.second == &menu; });
    if (found != last) mirrors_.erase(found);
}

void QtMenuBars::becameDirty(QtMenu& menu) {
    dirty_.push_back(menu.weak_from_this());
    scheduleCheck();
}

void QtMenuBars::bringUpToDate() {
    if (bringingUpToDate_ || dirty_.empty()) return;
    const Raised busy(bringingUpToDate_);
    // What observers make dirty meanwhile is for the next time.
    for (const auto& dirty : std::exchange(dirty_, {})) {
        if (const Id menu = dirty.lock()) static_cast<QtMenu&>(*menu).bringUpToDate();
    }
}

void QtMenuBars::open(QMenu& menu) {
    if (menu.isVisible()) return;
    // Prepared twice, some hosts would fill it twice.
    if (std::find(opened_.begin(), opened_.end(), &menu) != opened_.end()) closeOpened();
    opened_.emplace_back(&menu);
    closer_.start();
    guarded("Preparing a menu", [&] { Q_EMIT menu.aboutToShow(); });
}

void QtMenuBars::closeOpened() {
    closer_.stop();
    const std::vector<QPointer<QMenu>> opened = std::exchange(opened_, {});
    // Items that go now, of a menu that is filled for each opening, stay known to the mirror.
    const Raised closing(closing_);
    for (auto menu = opened.rbegin(); menu != opened.rend(); ++menu) {
        if (!*menu || (*menu)->isVisible()) continue;
        guarded("Closing a menu", [&] { Q_EMIT(*menu)->aboutToHide(); });
    }
}

void QtMenuBars::noticeAction(QObject* receiver, const QActionEvent& event) {
    const QEvent::Type type = event.type();
    if (type == QEvent::ActionChanged && event.action() == shownKeys_.changing()) return;
    if (closing_ && type == QEvent::ActionRemoved) return;
    bool known = false;
    const auto [first, last] = mirrors_.equal_range(receiver);
    for (auto entry = first; entry != last; ++entry) {
        if (entry->second->widget() != receiver) continue;
        entry->second->markDirty();
        known = true;
    }
    if (known || type != QEvent::ActionAdded || !foundBars_) return;
    if (auto* bar = qobject_cast<QMenuBar*>(receiver)) {
        learn(*bar);
        scheduleCheck();
    }
}

void QtMenuBars::noticeWindow(QObject* receiver, QEvent::Type type) {
    if (!receiver->isWidgetType()) return;
    auto& widget = static_cast<QWidget&>(*receiver);
    if (!widget.isWindow()) return;
    auto* menu = qobject_cast<QMenu*>(&widget);
    if (type == QEvent::Close) {
        hostMaySave();
        return;
    }
    if (type == QEvent::Hide) {
        if (menu) shownKeys_.takeOff(*menu);
        return;
    }
    if (type == QEvent::Show) {
        windows_.contextMenus().noticeShow(widget);
        if (menu) showKeys(*menu);
    } else {
        windows_.noticeActivation(widget);
    }
    for (Bar& known : bars_) {
        if (known.bar && known.bar->window() == &widget) {
            known.asked = 0;
            scheduleCheck();
        }
    }
}

void QtMenuBars::showKeys(QMenu& menu) {
    // Items that came with the opening get their keys only now.
    bringUpToDate();
    const auto [first, last] = mirrors_.equal_range(&menu);
    std::vector<std::pair<QPointer<QAction>, NSMenuItemRef>> given;
    const QList<QAction*> actions = menu.actions();
    for (QAction* action : actions) {
        if (NSMenuItemRef item = QtOwnMenus::itemOf(*action)) given.emplace_back(action, item);
    }
    for (auto entry = first; entry != last; ++entry) {
        for (const NSMenuItemRef& item : entry->second->itemArray()) {
            if (!item->hasGivenKeyEquivalent()) continue;
            given.emplace_back(entry->second->actionOf(*item), item);
        }
    }
    for (const auto& [action, item] : given) {
        if (action) shownKeys_.put(menu, *action, *item);
    }
    if (!given.empty()) QtShownKeys::keepOnScreen(menu);
}

void QtMenuBars::checkWhenOpened(QMenu& menu) {
    QObject::connect(&menu, &QMenu::aboutToShow, &context_, [this] {
        for (Bar& known : bars_) known.asked = 0;
        guarded("Looking at the menus", [this] { check(); });
    });
}

void QtMenuBars::scheduleCheck() {
    // Before the first look at a menu there is nothing to keep up to date.
    if (checkScheduled_ || mirrors_.empty()) return;
    checkScheduled_ = true;
    QMetaObject::invokeMethod(
        &context_,
        [this] {
            checkScheduled_ = false;
            guarded("Looking at the menus", [this] { check(); });
        },
        Qt::QueuedConnection);
}

void QtMenuBars::check() {
    if (checking_) return;
    const Raised busy(checking_);
    bringUpToDate();
    tellOfNewMainMenu();
    askForAdditions();
}

void QtMenuBars::tellOfNewMainMenu() {
    QMenuBar* bar = currentBar();
    if (!bar || bar == lastMain_) return;
    lastMain_ = bar;
    NSMenu::noteChange();
    const NSMenuRef menu = mainMenu();
    if (hadMain_ && menu) postAddedLeaves(*menu);
}

bool QtMenuBars::wantsAdditions(const Bar& known) {
    if (!known.bar || known.asked >= mostRequests) return false;
    const QWidget* window = known.bar->window();
    return window->isVisible() && !QtWindows::isOwn(*window) && barOf(*window) == known.bar;
}

void QtMenuBars::askForAdditions() {
    if (!ownMenus_.hasSubmenus()) return;
    std::vector<QPointer<QMenuBar>> bars;
    for (Bar& known : bars_) {
        if (wantsAdditions(known)) bars.push_back(known.bar);
    }
    for (const QPointer<QMenuBar>& bar : bars) {
        if (!bar) continue;
        const std::shared_ptr<QtMenu> mirror = mirrorOf(*bar);
        const auto& items = mirror->itemArray();
        const bool has = std::any_of(items.begin(), items.end(), [](const NSMenuItemRef& item) {
            const auto* menu = dynamic_cast<const QtMenu*>(item->submenu().get());
            return menu && menu->hasOwnSubmenu();
        });
        if (has || items.empty() || !items.front()->hasSubmenu()) continue;
        for (Bar& known : bars_) {
            if (known.bar == bar) ++known.asked;
        }
        NSNotificationCenter::defaultCenter().postNotification(
            {NSApplicationDidShowMainMenuNotification, mirror.get(), std::nullopt});
    }
}

}  // namespace velmora
