#include "platform/qt/menus/QtMenuBars.h"

#include "platform/qt/menus/QtContextMenus.h"

#include <QApplication>
#include <QLayout>
#include <QMenu>
#include <algorithm>
#include <climits>

#include "platform/foundation/NSNotificationCenter.h"
#include "platform/qt/base/QtGuard.h"
#include "platform/qt/base/QtTitles.h"
#include "platform/qt/menus/QtMenu.h"
#include "platform/qt/windows/QtWindows.h"
#include "platform/runtime/Class.h"
#include "platform/runtime/NSLog.h"
#include "platform/runtime/Raised.h"

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

bool isBar(const QWidget& root) {
    return qobject_cast<const QMenuBar*>(&root);
}

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

/// A host that fills its first menu when that opens for the first time would take an item of ours
/// for its own.
void prepareFirst(NSMenu& mainMenu) {
    const NSMenuItemRef first = mainMenu.itemAtIndex(0);
    const NSMenuRef menu = first ? first->submenu() : nullptr;
    if (menu && menu->numberOfItems() == 0) menu->update();
}

/// For who looks for the paths of what has no bar on the screen.
void traceMade(const NSMenu& mainMenu) {
    if (!NSTraceEnabled()) return;
    std::string line = "made a main menu:";
    for (const NSMenuItemRef& item : mainMenu.itemArray()) line += " \"" + item->title() + '"';
    NSTrace(line);
}

}  // namespace

QtMenuBars::QtMenuBars(QtWindows& windows, QtContextMenus& contextMenus)
    : windows_(windows),
      contextMenus_(contextMenus),
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
    QWidget* root = currentRoot();
    if (!root) return nullptr;
    if (!isBar(*root)) lookAtWindow(*root);
    std::shared_ptr<QtMenu> mirror = mirrorOf(*root);
    if (!hadMain_) {
        hadMain_ = true;
        lastMain_ = root;
    } else if (lastMain_ != root) {
        scheduleCheck();
    }
    prepareFirst(*mirror);
    for (const NSMenuItemRef& item : mirror->itemArray()) {
        if (auto* menu = dynamic_cast<QtMenu*>(item->submenu().get())) menu->adoptOwnSubmenus();
    }
    return mirror;
}

QWidget* QtMenuBars::currentRoot() {
    if (QMenuBar* bar = currentBar()) return bar;
    return windowWithoutBar();
}

QMenuBar* QtMenuBars::currentBar() {
    findBars();
    std::erase_if(roots_, [](const Root& known) { return !known.widget; });
    QMenuBar* best = nullptr;
    int bestRank = INT_MAX;
    for (const Root& known : roots_) {
        QWidget* window = known.widget->window();
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
    for (const Root& known : roots_) {
        auto* bar = qobject_cast<QMenuBar*>(known.widget.data());
        if (bar && !bar->parentWidget() && bar->isNativeMenuBar() && hasMenus(*bar)) return bar;
    }
    return nullptr;
}

QWidget* QtMenuBars::windowWithoutBar() {
    QWidget* best = nullptr;
    std::pair<bool, int> bestRank;
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget* window : windows) {
        if (!QtMadeMenu::isFor(*window)) continue;
        const QWidget* parent = window->parentWidget();
        // A dialog, whose commands are those of its window.
        if (parent && QtMadeMenu::isFor(*parent->window())) continue;
        const std::pair rank(!QtMadeMenu::offersCommands(*window),
                             windows_.activationRank(*window));
        if (best && rank >= bestRank) continue;
        best = window;
        bestRank = rank;
    }
    return best;
}

void QtMenuBars::lookAtWindow(QWidget& window) {
    // Nothing tells of buttons and tool bars that come and go.
    const auto [first, last] = mirrors_.equal_range(&window);
    for (auto entry = first; entry != last; ++entry) entry->second->markDirty();
}

void QtMenuBars::findBars() {
    if (foundBars_) return;
    foundBars_ = true;
    const QWidgetList widgets = QApplication::allWidgets();
    for (QWidget* widget : widgets) {
        if (auto* bar = qobject_cast<QMenuBar*>(widget)) learn(*bar);
    }
}

void QtMenuBars::learn(QWidget& root) {
    const bool known = std::any_of(roots_.begin(), roots_.end(), [&](const Root& candidate) {
        return candidate.widget == &root;
    });
    if (!known) roots_.push_back({&root, nullptr, 0});
}

QMenuBar* QtMenuBars::barOf(const QWidget& window) {
    QMenuBar* best = nullptr;
    int bestClaim = 0;
    for (const Root& known : roots_) {
        auto* bar = qobject_cast<QMenuBar*>(known.widget.data());
        if (!bar || bar->window() != &window || !hasMenus(*bar)) continue;
        const int claim = claimOf(*bar, window);
        if (claim <= bestClaim) continue;
        best = bar;
        bestClaim = claim;
    }
    return best;
}

std::shared_ptr<QtMenu> QtMenuBars::mirrorOf(QWidget& root) {
    learn(root);
    const auto known = std::find_if(roots_.begin(), roots_.end(), [&](const Root& candidate) {
        return candidate.widget == &root;
    });
    const bool isNew = !known->mirror;
    if (isNew) {
        known->mirror = std::make_shared<QtMenu>(*this, root, std::string(), 0);
        known->mirror->markDirty();
    }
    std::shared_ptr<QtMenu> mirror = known->mirror;
    bringUpToDate();
    if (isNew && !isBar(root)) traceMade(*mirror);
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
    if (std::find(opened_.begin(), opened_.end(), &menu) != opened_.end()) return;
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
    if (known) return;
    // A tool bar, or a button, of a window whose own menus are mirrored.
    if (receiver->isWidgetType()) lookAtWindow(*static_cast<QWidget*>(receiver)->window());
    if (type != QEvent::ActionAdded || !foundBars_) return;
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
    if (type == QEvent::Show) {
        contextMenus_.noticeShow(widget);
        if (menu) showKeys(*menu);
    } else {
        windows_.noticeActivation(widget);
    }
    for (Root& known : roots_) {
        if (known.widget && known.widget->window() == &widget) {
            known.asked = 0;
            scheduleCheck();
        }
    }
    // Any window may be the next that a main menu is made of.
    if (lastMain_ && !isBar(*lastMain_)) scheduleCheck();
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
        for (Root& known : roots_) known.asked = 0;
        guarded("Looking at the menus", [this] { check(); });
    });
}

void QtMenuBars::scheduleCheck() {
    // Before the first look at a menu there is nothing to keep up to date.
    if (checkScheduled_ || !hadMain_) return;
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
    QWidget* root = currentRoot();
    if (!root || root == lastMain_) return;
    lastMain_ = root;
    if (isBar(*root)) giveUpMadeMenus();
    NSMenu::noteChange();
    const NSMenuRef menu = mainMenu();
    if (hadMain_ && menu) menu->postAddedLeaves();
}

void QtMenuBars::giveUpMadeMenus() {
    // With what was inserted into them: a bar has all that now.
    std::erase_if(roots_, [](const Root& known) { return known.widget && !isBar(*known.widget); });
}

bool QtMenuBars::wantsAdditions(const Root& known) {
    if (!known.widget || known.asked >= mostRequests) return false;
    if (!isBar(*known.widget)) return known.widget == lastMain_;
    const QWidget* window = known.widget->window();
    return window->isVisible() && !QtWindows::isOwn(*window) && barOf(*window) == known.widget;
}

void QtMenuBars::askForAdditions() {
    if (!ownMenus_.hasSubmenus()) return;
    std::vector<QPointer<QWidget>> roots;
    for (Root& known : roots_) {
        if (wantsAdditions(known)) roots.push_back(known.widget);
    }
    for (const QPointer<QWidget>& root : roots) {
        if (!root) continue;
        const std::shared_ptr<QtMenu> mirror = mirrorOf(*root);
        const auto& items = mirror->itemArray();
        const bool has = std::any_of(items.begin(), items.end(), [](const NSMenuItemRef& item) {
            const auto* menu = dynamic_cast<const QtMenu*>(item->submenu().get());
            return menu && menu->hasOwnSubmenu();
        });
        if (has || items.empty() || !items.front()->hasSubmenu()) continue;
        for (Root& known : roots_) {
            if (known.widget == root) ++known.asked;
        }
        NSNotificationCenter::defaultCenter().postNotification(
            {NSApplicationDidShowMainMenuNotification, mirror.get(), std::nullopt});
    }
}

}  // namespace velmora
