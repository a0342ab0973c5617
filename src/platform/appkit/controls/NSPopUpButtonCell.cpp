#include "platform/appkit/controls/NSPopUpButtonCell.h"

#include "platform/runtime/Class.h"

namespace velmora {

Class& NSPopUpButtonCell::classObject() {
    static auto* object = new Class("NSPopUpButtonCell", &NSButtonCell::classObject());
    return *object;
}

void NSPopUpButtonCell::initTextCell_pullsDown(const std::string& title, bool pullsDown) {
    setTitle(title);
    pullsDown_ = pullsDown;
}

void NSPopUpButtonCell::setMenu(NSMenuRef menu) {
    menu_ = std::move(menu);
    changed();
}

std::string NSPopUpButtonCell::faceTitle() const {
    const NSMenuItemRef selected = pullsDown_ ? nullptr : selected_.lock();
    if (selected) return selected->title();
    const bool hasFace = menu_ && menu_->numberOfItems() > 0;
    return hasFace ? menu_->itemAtIndex(0)->title() : title();
}

void NSPopUpButtonCell::userChose(NSMenuItem& item) {
    if (!item.menu() || !item.isEnabled() || item.hasSubmenu() || item.isSeparatorItem()) return;
    selected_ = std::static_pointer_cast<NSMenuItem>(item.shared_from_this());
    item.perform();
    changed();
}

}  // namespace velmora
