#include "panels/VelmoraMenuSelectorCell.h"

#include "definitions/VelmoraUtils.h"
#include "panels/VelmoraMenuItem.h"
#include "platform/appkit/NSApplication.h"
#include "platform/port/Desktop.h"
#include "platform/runtime/Class.h"
#include "platform/runtime/ProcessWide.h"

namespace velmora {

namespace {

constexpr float textSize = 11;

ProcessWide<NSMenuItemRef> selectedMenuItem;

NSMenuItemRef cloneItem(const NSMenuItemRef& item, bool isFirst) {
    if (item->isSeparatorItem()) return NSMenuItem::separatorItem();
    // The application menu's item in the menu bar has no title of its own.
    const bool isNameless = isFirst && item->title().empty();
    const auto copy =
        std::make_shared<VelmoraMenuItem>(isNameless ? desktop().processName() : item->title(),
                                          Selector::named("menuItemSelected:"), "");
    copy->setTarget(VelmoraMenuSelectorCell::classObject().asObject());
    copy->setRepresentedObject(item);
    if (item->hasSubmenu()) {
        copy->setSubmenu(VelmoraMenuSelectorCell::cloneMenu(*item->submenu()));
    }
    return copy;
}

}  // namespace

Class& VelmoraMenuSelectorCell::classObject() {
    static auto* object =
        &(new Class("VelmoraMenuSelectorCell", &NSPopUpButtonCell::classObject()))
             ->classMethod<&VelmoraMenuSelectorCell::menuItemSelected>("menuItemSelected:");
    return *object;
}

void VelmoraMenuSelectorCell::initTextCell_pullsDown(const std::string& title, bool pullsDown) {
    NSPopUpButtonCell::initTextCell_pullsDown(title, pullsDown);
    setFont(NSFont::systemFontOfSize(textSize));
    setControlSize(NSSmallControlSize);
    updateMenu();
}

void VelmoraMenuSelectorCell::updateMenu() {
    const NSMenuRef mainMenu = NSApp().mainMenu();
    const NSMenuRef copy = mainMenu ? cloneMenu(*mainMenu) : std::make_shared<NSMenu>();
    copy->insertItem_atIndex(std::make_shared<VelmoraMenuItem>("title", Selector(), ""), 0);
    setMenu(copy);
}

NSMenuRef VelmoraMenuSelectorCell::cloneMenu(const NSMenu& menu) {
    auto copy = std::make_shared<NSMenu>(menu.title());
    bool isFirst = true;
    for (const NSMenuItemRef& item : menu.itemArray()) {
        copy->addItem(cloneItem(item, std::exchange(isFirst, false)));
    }
    return copy;
}

void VelmoraMenuSelectorCell::menuItemSelected(const Id& item) {
    selectedMenuItem = std::dynamic_pointer_cast<NSMenuItem>(item);
}

ObjectValue VelmoraMenuSelectorCell::objectValue() const {
    return *selectedMenuItem ? ObjectValue(Id(*selectedMenuItem)) : ObjectValue();
}

void VelmoraMenuSelectorCell::setObjectValue(const ObjectValue& value) {
    const NSMenuItemRef& face = menu()->itemAtIndex(0);
    if (const auto item = std::dynamic_pointer_cast<NSMenuItem>(objectOf(value))) {
        face->setTitle(VelmoraUtils::menuItemPathFor(*item));
    } else if (const PropertyList* text = propertyListOf(value); text && text->string()) {
        face->setTitle(*text->string());
    }
}

}  // namespace velmora
