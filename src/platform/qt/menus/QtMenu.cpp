#include "platform/qt/menus/QtMenu.h"

#include <QMenu>
#include <QMenuBar>
#include <algorithm>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "platform/appkit/NSApplication.h"
#include "platform/qt/base/QtTitles.h"
#include "platform/qt/menus/QtMenuBars.h"
#include "platform/qt/windows/QtModality.h"
#include "platform/runtime/NSLog.h"
#include "platform/runtime/Raised.h"

namespace velmora {

namespace {

/// Deeper menus are no menus: a host may make one more for each that is looked into.
constexpr int deepest = 32;

void tellOfDeeperMenus(const std::string& path) {
    static bool told = false;
    if (std::exchange(told, true)) return;
    NSLog("Menus deeper than " + std::to_string(deepest) + " levels are not seen: " + path);
}

/// What a user sees in a menu or a bar: neither hidden actions nor placeholders without a title.
std::vector<QtMenuEntry> shownActions(const QWidget& widget) {
    std::vector<QtMenuEntry> shown;
    const QList<QAction*> actions = widget.actions();
    for (QAction* action : actions) {
        std::string title = action->isSeparator() ? std::string() : titleFromText(action->text());
        const bool titled = action->isSeparator() || !title.empty();
        if ((!action->isVisible() || !titled) && !QtOwnMenus::isOwn(*action)) continue;
        shown.push_back({action, std::move(title), action->menu()});
    }
    return shown;
}

bool isWindow(const QWidget* widget) {
    return !qobject_cast<const QMenu*>(widget) && !qobject_cast<const QMenuBar*>(widget);
}

/// Whether what happens now is that a key is held down.
bool isKeyRepeated() {
    const NSEventRef event = NSApp().currentEvent();
    return event && event->type() == NSKeyDown && event->fields().isARepeat;
}

bool refusesRepeats(const QtMenuItem& item) {
    const QAction* action = item.hostAction();
    return action && !action->autoRepeat();
}

}  // namespace

std::string joinedPath(const std::string& prefix, const std::string& title) {
    return prefix.empty() ? title : prefix + '/' + title;
}

QtMenu::QtMenu(QtMenuBars& owner, QWidget& widget, std::string path, int depth)
    : owner_(&owner), widget_(&widget), key_(&widget), path_(std::move(path)), depth_(depth) {
    owner_->add(*this, key_);
    if (depth == 0 && isWindow(&widget)) made_ = std::make_unique<QtMadeMenu>(widget);
}

QtMenu::~QtMenu() {
    if (owner_) owner_->remove(*this, key_);
    while (!own_.empty()) drop(own_.back());
}

void QtMenu::rebind(QWidget& widget) {
    if (owner_) {
        owner_->remove(*this, key_);
        owner_->add(*this, &widget);
    }
    key_ = &widget;
    widget_ = &widget;
    markDirty();
}

void QtMenu::setPath(std::string path) {
    if (path == path_) return;
    path_ = std::move(path);
    markDirty();
}

void QtMenu::markDirty() {
    if (dirty_) return;
    dirty_ = true;
    if (owner_) owner_->becameDirty(*this);
}

void QtMenu::bringUpToDate() {
    // What observers of our changes bring about is taken over in the next pass.
    if (!dirty_ || bringingUpToDate_) return;
    const Id keep = shared_from_this();
    dirty_ = false;
    // A host that fills a menu for each opening may empty it afterwards. A user would find there
    // what it held when it was open.
    if (!preparing_ && qobject_cast<QMenu*>(widget_.data()) && entries().empty()) return;
    const Raised busy(bringingUpToDate_);
    arrange(wantedItems());
    bringSubmenusUpToDate();
    // The owner may have come by meanwhile.
    if (dirty_ && owner_) owner_->becameDirty(*this);
}

void QtMenu::bringSubmenusUpToDate() {
    // Only now, when the way from the bar to their items is complete.
    for (int i = 0; i < numberOfItems(); ++i) {
        if (auto submenu = std::dynamic_pointer_cast<QtMenu>(itemAtIndex(i)->submenu())) {
            submenu->bringUpToDate();
        }
    }
}

QtMenu::Own* QtMenu::ownOf(const NSMenuItem* item) {
    const auto own = std::find_if(own_.begin(), own_.end(),
                                  [item](const Own& candidate) { return candidate.item == item; });
    return own != own_.end() ? &*own : nullptr;
}

void QtMenu::drop(Own& own) {
    const QPointer<QAction> action = own.action;
    own_.erase(own_.begin() + (&own - own_.data()));
    if (action && widget_) widget_->removeAction(action);
    QtOwnMenus::release(action);
}

QAction* QtMenu::actionOf(const NSMenuItem& item) const {
    if (const auto* mirrored = dynamic_cast<const QtMenuItem*>(&item)) {
        return mirrored->hostAction();
    }
    const auto own = std::find_if(own_.begin(), own_.end(),
                                  [&](const Own& candidate) { return candidate.item == &item; });
    return own != own_.end() ? own->action.data() : nullptr;
}

std::vector<QtMenuEntry> QtMenu::entries() {
    if (made_) return made_->menus();
    if (!widget_) return {};
    return isWindow(widget_) ? QtMadeMenu::commands(*widget_) : shownActions(*widget_);
}

std::vector<NSMenuItemRef> QtMenu::wantedItems() {
    const std::vector<QtMenuEntry> shown = entries();
    std::unordered_map<const QAction*, NSMenuItemRef> byAction;
    for (const NSMenuItemRef& item : itemArray()) {
        const QAction* action = actionOf(*item);
        if (action && action->isSeparator() == item->isSeparatorItem()) {
            byAction.emplace(action, item);
        }
    }
    std::vector<NSMenuItemRef> wanted;
    std::unordered_set<const NSMenuItem*> used;
    for (const QtMenuEntry& entry : shown) {
        const auto found = byAction.find(entry.action);
        if (found != byAction.end()) used.insert(found->second.get());
    }
    // Items whose action is not here any more, for new actions that take their place.
    std::vector<NSMenuItemRef> spare;
    for (const NSMenuItemRef& item : itemArray()) {
        if (!used.contains(item.get()) && dynamic_cast<QtMenuItem*>(item.get())) {
            spare.push_back(item);
        }
    }
    // Whoever hears of what is taken over may have the host do anything.
    for (const QtMenuEntry& entry : shown) {
        if (!entry.action) continue;
        const auto found = byAction.find(entry.action);
        if (found == byAction.end() && QtOwnMenus::isOwn(*entry.action)) continue;
        NSMenuItemRef item = found != byAction.end() ? found->second : itemFor(entry, spare);
        if (auto* mirrored = dynamic_cast<QtMenuItem*>(item.get())) takeOver(*mirrored, entry);
        wanted.push_back(std::move(item));
    }
    return wanted;
}

NSMenuItemRef QtMenu::itemFor(const QtMenuEntry& entry, std::vector<NSMenuItemRef>& spare) {
    const auto fits = [&](const NSMenuItemRef& item) {
        return item->isSeparatorItem() == entry.action->isSeparator() &&
               item->title() == entry.title;
    };
    const auto found = std::find_if(spare.begin(), spare.end(), fits);
    if (found == spare.end()) return std::make_shared<QtMenuItem>(*entry.action);
    NSMenuItemRef item = std::move(*found);
    spare.erase(found);
    return item;
}

bool QtMenu::isWithin(const QWidget& menu) const {
    for (const NSMenu* level = this; level; level = level->supermenu()) {
        const auto* mirror = dynamic_cast<const QtMenu*>(level);
        if (mirror && mirror->widget_ == &menu) return true;
    }
    return false;
}

void QtMenu::takeOver(QtMenuItem& item, const QtMenuEntry& entry) {
    if (!owner_) return;
    item.setHostAction(*entry.action, entry.title, path_);
    const bool opens = item.hostAction() && !item.isSeparatorItem();
    QWidget* menu = opens ? entry.submenu.data() : nullptr;
    if (menu && depth_ >= deepest) {
        tellOfDeeperMenus(joinedPath(path_, item.title()));
        menu = nullptr;
    }
    const bool holdsItself = menu && !isWindow(menu) && isWithin(*menu);
    if (!menu || !owner_ || holdsItself) {
        item.setSubmenu(nullptr);
        return;
    }
    const std::string path = joinedPath(path_, item.title());
    auto submenu = std::dynamic_pointer_cast<QtMenu>(item.submenu());
    if (!submenu) {
        submenu = std::make_shared<QtMenu>(*owner_, *menu, path, depth_ + 1);
        submenu->setDelegate(owner_->delegate());
        submenu->markDirty();
    } else if (submenu->widget() != menu) {
        submenu->rebind(*menu);
    }
    submenu->setTitle(item.title());
    submenu->setPath(path);
    item.setSubmenu(submenu);
}

void QtMenu::arrange(const std::vector<NSMenuItemRef>& wanted) {
    std::unordered_set<const NSMenuItem*> kept;
    for (const NSMenuItemRef& item : wanted) kept.insert(item.get());
    for (int i = numberOfItems() - 1; i >= 0; --i) {
        const NSMenuItemRef item = itemAtIndex(i);
        if (!item || kept.contains(item.get())) continue;
        if (Own* own = ownOf(item.get())) drop(*own);
        moving_ = item.get();
        removeItemAtIndex(i);
    }
    for (int i = 0; i < static_cast<int>(wanted.size()); ++i) {
        const NSMenuItemRef& item = wanted[static_cast<std::size_t>(i)];
        if (itemAtIndex(i) == item) continue;
        if (item->menu() == this) {
            moving_ = item.get();
            removeItemAtIndex(indexOfItem(*item));
        }
        moving_ = item.get();
        insertItem_atIndex(item, i);
    }
    moving_ = nullptr;
}

void QtMenu::update() {
    const Id keep = shared_from_this();
    if (auto* menu = qobject_cast<QMenu*>(widget_.data()); menu && owner_) owner_->open(*menu);
    const Raised preparing(preparing_);
    markDirty();
    bringUpToDate();
}

bool QtMenu::isReachable() const {
    if (!widget_) return false;
    if (const auto* menu = qobject_cast<const QMenu*>(widget_.data())) {
        const QAction* opener = menu->menuAction();
        const auto* upper = dynamic_cast<const QtMenu*>(supermenu());
        return opener->isEnabled() && opener->isVisible() && upper && upper->isReachable();
    }
    return widget_->isEnabled() && !isBlockedByModal(*widget_);
}

bool QtMenu::hasOwnSubmenu() const {
    return std::any_of(own_.begin(), own_.end(),
                       [](const Own& own) { return own.item->hasSubmenu(); });
}

void QtMenu::adoptOwnSubmenus() {
    for (const Own& own : own_) {
        if (const NSMenuRef& submenu = own.item->submenu()) becomeSupermenuOf(*submenu);
    }
}

void QtMenu::runItem(NSMenuItem& item) {
    auto* mirrored = dynamic_cast<QtMenuItem*>(&item);
    if (!mirrored) {
        NSMenu::runItem(item);
    } else if (owner_ && !(isKeyRepeated() && refusesRepeats(*mirrored))) {
        owner_->runner().runLater(*mirrored);
    }
}

void QtMenu::itemWasInserted(int index) {
    const NSMenuItemRef& item = itemAtIndex(index);
    if (std::exchange(moving_, nullptr) != item.get()) showOwnItem(*item, index);
}

void QtMenu::itemWillBeRemoved(int index) {
    const NSMenuItem* item = itemAtIndex(index).get();
    if (std::exchange(moving_, nullptr) == item) return;
    if (Own* own = ownOf(item)) drop(*own);
}

void QtMenu::itemWasChanged(int index) {
    const NSMenuItemRef item = itemAtIndex(index);
    if (!owner_) return;
    Own* own = ownOf(item.get());
    if (!own) return;
    QAction* before = own->action;
    QAction* action = owner_->ownMenus().actionFor(*item, before);
    if (action == before) return;
    own->action = action;
    if (widget_) {
        widget_->insertAction(before, action);
        if (before) widget_->removeAction(before);
    }
    QtOwnMenus::release(before);
    if (item->hasSubmenu()) watchOpening();
}

void QtMenu::showOwnItem(NSMenuItem& item, int index) {
    if (!owner_ || !widget_ || dynamic_cast<QtMenuItem*>(&item)) return;
    QAction* action = owner_->ownMenus().actionFor(item, nullptr);
    own_.push_back({&item, action});
    QAction* next = nullptr;
    const QList<QAction*> present = widget_->actions();
    for (int i = index + 1; i < numberOfItems() && !next; ++i) {
        QAction* candidate = actionOf(*itemAtIndex(i));
        if (candidate && candidate != action && present.contains(candidate)) next = candidate;
    }
    widget_->insertAction(next, action);
    if (item.hasSubmenu()) watchOpening();
}

void QtMenu::watchOpening() {
    // A host that refills the menu when it opens drops our item in the last moment.
    auto* menu = qobject_cast<QMenu*>(widget_.data());
    if (!menu || watched_ == menu) return;
    watched_ = menu;
    owner_->checkWhenOpened(*menu);
}

}  // namespace velmora
