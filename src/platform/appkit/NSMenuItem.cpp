#include "platform/appkit/NSMenuItem.h"

#include <utility>

#include "platform/appkit/NSMenu.h"
#include "platform/foundation/NSNotificationCenter.h"
#include "platform/runtime/Class.h"

namespace velmora {

Class& NSMenuItem::classObject() {
    static auto* object = new Class("NSMenuItem", &NSObject::classObject());
    return *object;
}

NSMenuItem::NSMenuItem(std::string title, Selector action, std::string keyEquivalent)
    : title_(std::move(title)), action_(action), keyEquivalent_(std::move(keyEquivalent)) {}

NSMenuItem::~NSMenuItem() {
    if (submenu_ && submenu_->supermenu_ == menu_) submenu_->supermenu_ = nullptr;
}

NSMenuItemRef NSMenuItem::initWithTitle_action_keyEquivalent(std::string title, Selector action,
                                                             std::string keyEquivalent) {
    return std::make_shared<NSMenuItem>(std::move(title), action, std::move(keyEquivalent));
}

NSMenuItemRef NSMenuItem::separatorItem() {
    auto item = std::make_shared<NSMenuItem>();
    item->separator_ = true;
    item->enabled_ = false;
    return item;
}

void NSMenuItem::setAction(Selector action) {
    if (action == action_) return;
    action_ = action;
    NSMenu::noteChange();
}

void NSMenuItem::setTitle(std::string title) {
    if (title == title_) return;
    title_ = std::move(title);
    changed();
}

void NSMenuItem::setKeyEquivalent(std::string key) {
    setKeyEquivalent_modifierMask(std::move(key), keyEquivalentModifierMask_);
}

void NSMenuItem::setKeyEquivalentModifierMask(std::uint32_t mask) {
    setKeyEquivalent_modifierMask(keyEquivalent_, mask);
}

void NSMenuItem::setKeyEquivalent_modifierMask(std::string key, std::uint32_t mask) {
    if (menu_ && !std::exchange(givenKeyEquivalent_, true)) NSMenu::noteChange();
    followKeyEquivalent(std::move(key), mask);
}

void NSMenuItem::followKeyEquivalent(std::string key, std::uint32_t mask) {
    if (key == keyEquivalent_ && mask == keyEquivalentModifierMask_) return;
    keyEquivalent_ = std::move(key);
    keyEquivalentModifierMask_ = mask;
    changed();
}

void NSMenuItem::setEnabled(bool enabled) {
    if (enabled == enabled_) return;
    enabled_ = enabled;
    changed();
}

void NSMenuItem::setSubmenu(std::shared_ptr<NSMenu> submenu) {
    if (submenu == submenu_) return;
    if (submenu_ && submenu_->supermenu_ == menu_) submenu_->supermenu_ = nullptr;
    submenu_ = std::move(submenu);
    if (submenu_) submenu_->supermenu_ = menu_;
    changed();
    const std::shared_ptr<NSMenu> present = submenu_;
    if (menu_ && present) present->postAddedLeaves();
}

void NSMenuItem::setImage(std::shared_ptr<NSImage> image) {
    image_ = std::move(image);
    changed();
}

bool NSMenuItem::perform() {
    NSMenu* menu = menu_;
    if (!menu) return false;
    menu->performActionForItemAtIndex(menu->indexOfItem(*this));
    return true;
}

void NSMenuItem::changed() {
    NSMenu* menu = menu_;
    if (!menu) return;
    NSMenu::noteChange();
    const int index = menu->indexOfItem(*this);
    menu->itemWasChanged(index);
    NSNotificationCenter::defaultCenter().postNotification(
        {NSMenuDidChangeItemNotification, menu, index});
}

}  // namespace velmora
