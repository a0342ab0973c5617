#include "platform/appkit/NSMenu.h"

#include <algorithm>

#include "platform/appkit/NSApplication.h"
#include "platform/foundation/NSNotificationCenter.h"
#include "platform/port/Desktop.h"
#include "platform/runtime/Class.h"
#include "platform/runtime/ProcessWide.h"

namespace velmora {

namespace {

ProcessWide<std::uint64_t> changes;

Selector performActionSelector() {
    static const Selector selector = Selector::named("performActionForItemAtIndex:");
    return selector;
}

}  // namespace

std::uint64_t NSMenu::generation() {
    return *changes;
}

void NSMenu::noteChange() {
    ++*changes;
}

Class& NSMenu::classObject() {
    static auto* object = &(new Class("NSMenu", &NSObject::classObject()))
                               ->method<&NSMenu::performActionForItemAtIndexImplementation>(
                                   "performActionForItemAtIndex:");
    return *object;
}

NSMenu::NSMenu(std::string title) : title_(std::move(title)) {}

NSMenu::~NSMenu() {
    for (const NSMenuItemRef& item : items_) {
        if (item->submenu_ && item->submenu_->supermenu_ == this) {
            item->submenu_->supermenu_ = nullptr;
        }
        item->menu_ = nullptr;
    }
}

const NSMenuItemRef NSMenu::noItem;

int NSMenu::indexOfItem(const NSMenuItem& item) const {
    for (int i = 0; i < numberOfItems(); ++i) {
        if (items_[static_cast<std::size_t>(i)].get() == &item) return i;
    }
    return -1;
}

int NSMenu::indexOfItemWithTitle(const std::string& title) const {
    for (int i = 0; i < numberOfItems(); ++i) {
        if (items_[static_cast<std::size_t>(i)]->title() == title) return i;
    }
    return -1;
}

void NSMenu::insertItem_atIndex(NSMenuItemRef item, int index) {
    if (!item) return;
    if (NSMenu* other = item->menu_) other->removeItemAtIndex(other->indexOfItem(*item));
    index = std::clamp(index, 0, numberOfItems());
    item->menu_ = this;
    if (item->submenu_) item->submenu_->supermenu_ = this;
    const NSMenuRef submenu = item->submenu_;
    items_.insert(items_.begin() + index, std::move(item));
    noteChange();
    itemWasInserted(index);
    NSNotificationCenter::defaultCenter().postNotification(
        {NSMenuDidAddItemNotification, this, index});
    if (submenu) submenu->postAddedLeaves();
}

void NSMenu::postAddedLeaves() {
    // Whoever hears of an item may change the menu.
    for (int i = 0; i < numberOfItems(); ++i) {
        if (const NSMenuRef submenu = itemAtIndex(i)->submenu()) {
            submenu->postAddedLeaves();
        } else {
            NSNotificationCenter::defaultCenter().postNotification(
                {NSMenuDidAddItemNotification, this, i});
        }
    }
}

void NSMenu::removeItemAtIndex(int index) {
    if (index < 0 || index >= numberOfItems()) return;
    itemWillBeRemoved(index);
    const NSMenuItemRef item = items_[static_cast<std::size_t>(index)];
    items_.erase(items_.begin() + index);
    noteChange();
    item->menu_ = nullptr;
    if (item->submenu_ && item->submenu_->supermenu_ == this) {
        item->submenu_->supermenu_ = nullptr;
    }
    NSNotificationCenter::defaultCenter().postNotification(
        {NSMenuDidRemoveItemNotification, this, index});
}

bool NSMenu::isMainMenu() const {
    return NSApp().mainMenu().get() == this;
}

void NSMenu::performActionForItemAtIndex(int index) {
    // The item may go while its action runs, and the menu with it.
    const auto kept = weak_from_this().lock();
    message<void(int)>(*this, performActionSelector(), index);
}

void NSMenu::performActionForItemAtIndexImplementation(int index) {
    const NSMenuItemRef wanted = itemAtIndex(index);
    if (!wanted || wanted->isSeparatorItem()) return;
    update();
    // A menu that is filled for each opening may hold another item in its place.
    const NSMenuItemRef item = wanted->menu() == this ? wanted : itemAtIndex(index);
    if (item && item->title() == wanted->title() && item->isEnabled()) runItem(*item);
}

void NSMenu::runItem(NSMenuItem& item) {
    const auto chosen = std::static_pointer_cast<NSMenuItem>(item.shared_from_this());
    desktop().runCommand(
        [chosen] { NSApp().sendAction_to_from(chosen->action(), chosen->target(), chosen); });
}

}  // namespace velmora
