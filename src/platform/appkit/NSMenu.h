#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/appkit/NSMenuItem.h"
#include "platform/runtime/NSObject.h"

namespace velmora {

/// A menu: a title and items. It owns its items, and they their submenus. Adding, removing and
/// changing items posts the menu notifications. Desktops derive from it for the host's own menus.
class NSMenu : public NSObject {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    explicit NSMenu(std::string title = {});
    ~NSMenu() override;

    const std::string& title() const { return title_; }
    void setTitle(std::string title) { title_ = std::move(title); }

    int numberOfItems() const { return static_cast<int>(items_.size()); }
    /// The item at the index, or null.
    const NSMenuItemRef& itemAtIndex(int index) const {
        return index >= 0 && index < numberOfItems() ? items_[static_cast<std::size_t>(index)]
                                                     : noItem;
    }
    const std::vector<NSMenuItemRef>& itemArray() const { return items_; }
    /// -1 when the item is not in this menu.
    int indexOfItem(const NSMenuItem& item) const;
    /// The first item with exactly that title, or -1.
    int indexOfItemWithTitle(const std::string& title) const;

    /// An item that stands in another menu is taken out of it first; the index is clamped.
    void insertItem_atIndex(NSMenuItemRef item, int index);
    void addItem(NSMenuItemRef item) { insertItem_atIndex(std::move(item), numberOfItems()); }
    void removeItemAtIndex(int index);

    /// Posts the notification of an added item for each item of the tree that opens no submenu: a
    /// menu that was filled before it came into another one is new to those who look for items.
    void postAddedLeaves();

    /// Another number after each change of any menu of the process, and when another one has become
    /// the main menu, of which desktops tell.
    static std::uint64_t generation();
    static void noteChange();

    /// Whether it is the application's main menu, or that of any of its windows where each has one.
    virtual bool isMainMenu() const;

    /// The menu one of whose items opens this one, or null for an outermost menu.
    NSMenu* supermenu() const { return supermenu_; }

    /// An object that may answer `menuNeedsUpdate:` (`void(NSMenu&)`) by filling the menu. Not kept
    /// alive.
    Id delegate() const { return delegate_.lock(); }
    void setDelegate(const Id& delegate) { delegate_ = delegate; }

    /// Has the items validated as they would be when the menu opens.
    virtual void update() {}

    /// Runs the item as if the user had chosen it, by a message that can be exchanged: the menu is
    /// updated first, as by its opening, and may then hold another item of that title at the index.
    /// An item that is disabled or gone after that, a separator and an index without an item do
    /// nothing.
    void performActionForItemAtIndex(int index);

protected:
    /// What running an item does: here it sends its action to its target.
    virtual void runItem(NSMenuItem& item);
    virtual void itemWasInserted(int /*index*/) {}
    virtual void itemWillBeRemoved(int /*index*/) {}
    virtual void itemWasChanged(int /*index*/) {}

    /// Makes this the menu above the submenu, also where items of several menus open it.
    void becomeSupermenuOf(NSMenu& submenu) { submenu.supermenu_ = this; }

private:
    friend class NSMenuItem;
    void performActionForItemAtIndexImplementation(int index);

    static const NSMenuItemRef noItem;

    std::string title_;
    std::vector<NSMenuItemRef> items_;
    NSMenu* supermenu_ = nullptr;
    std::weak_ptr<NSObject> delegate_;
};

using NSMenuRef = std::shared_ptr<NSMenu>;

}  // namespace velmora
