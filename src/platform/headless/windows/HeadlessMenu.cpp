#include "platform/headless/windows/HeadlessMenu.h"

#include "platform/runtime/Class.h"

namespace velmora {

namespace {

Selector menuNeedsUpdate() {
    static const Selector selector = Selector::named("menuNeedsUpdate:");
    return selector;
}

/// Fills a menu when it is asked to, as the host's own code does.
class MenuFiller final : public NSObject {
public:
    static Class& classObject() {
        static auto* object = &(new Class("HeadlessMenuFiller", &NSObject::classObject()))
                                   ->method<&MenuFiller::fill>("menuNeedsUpdate:");
        return *object;
    }
    Class& isa() const override { return classObject(); }

    explicit MenuFiller(const ItemDescription& description) : description_(description) {}

    void fill(NSMenu& menu) {
        if (filled_ && description_.filling == ItemDescription::Filling::lazy) return;
        filled_ = true;
        while (menu.numberOfItems() > 0) menu.removeItemAtIndex(0);
        for (const ItemDescription& item : description_.items) {
            static_cast<HeadlessMenu&>(menu).append(item);
        }
    }

private:
    ItemDescription description_;
    bool filled_ = false;
};

}  // namespace

HeadlessMenuItem::HeadlessMenuItem(const ItemDescription& description,
                                   const CommandHandler& handler)
    : NSMenuItem(description.title, Selector::named(description.action), description.keyEquivalent),
      enabledWhenOpened_(description.enabledWhenOpened) {
    separator_ = description.kind == ItemDescription::Kind::separator;
    setEnabled(!separator_ && description.enabled);
    setKeyEquivalentModifierMask(description.keyModifiers);
    if (description.kind == ItemDescription::Kind::submenu) {
        setSubmenu(HeadlessMenu::makeSubmenu(description, handler));
    }
}

void HeadlessMenuItem::validate() {
    if (enabledWhenOpened_) setEnabled(*enabledWhenOpened_);
}

std::shared_ptr<HeadlessMenu> HeadlessMenu::make(const std::string& title,
                                                 const std::vector<ItemDescription>& items,
                                                 const CommandHandler& handler) {
    auto menu = std::make_shared<HeadlessMenu>(title, handler);
    for (const ItemDescription& item : items) menu->append(item);
    return menu;
}

std::shared_ptr<HeadlessMenu> HeadlessMenu::makeSubmenu(const ItemDescription& description,
                                                        const CommandHandler& handler) {
    if (description.filling == ItemDescription::Filling::present) {
        return make(description.title, description.items, handler);
    }
    auto menu = make(description.title, {}, handler);
    menu->filler_ = std::make_shared<MenuFiller>(description);
    menu->setDelegate(menu->filler_);
    return menu;
}

void HeadlessMenu::append(const ItemDescription& description) {
    addItem(std::make_shared<HeadlessMenuItem>(description, handler_));
}

void HeadlessMenu::update() {
    for (const NSMenuItemRef& item : itemArray()) {
        if (auto* own = dynamic_cast<HeadlessMenuItem*>(item.get())) own->validate();
    }
}

void HeadlessMenu::runItem(NSMenuItem& item) {
    if (item.target()) {
        NSMenu::runItem(item);
    } else if (handler_) {
        handler_(item);
    }
}

NSMenuItemRef menuItemAtPath(const NSMenu& menu, const std::string& path, int first) {
    for (int i = first; i < menu.numberOfItems(); ++i) {
        const NSMenuItemRef& item = menu.itemAtIndex(i);
        if (item->title() == path) return item;
        if (!item->hasSubmenu()) continue;
        const std::string above = item->title() + '/';
        if (!path.starts_with(above)) continue;
        if (NSMenuItemRef found = menuItemAtPath(*item->submenu(), path.substr(above.size()))) {
            return found;
        }
    }
    return nullptr;
}

std::string pathOfMenuItem(const NSMenuItem& item) {
    std::string path = item.title();
    for (const NSMenu* menu = item.menu(); menu && menu->supermenu(); menu = menu->supermenu()) {
        path = menu->title() + '/' + path;
    }
    return path;
}

void openMenu(NSMenu& menu) {
    const Id delegate = menu.delegate();
    if (delegate && delegate->respondsToSelector(menuNeedsUpdate())) {
        message<void(NSMenu&)>(*delegate, menuNeedsUpdate(), menu);
    }
    menu.update();
}

}  // namespace velmora
