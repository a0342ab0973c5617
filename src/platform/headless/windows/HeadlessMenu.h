#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/appkit/NSMenu.h"
#include "platform/headless/windows/HostDescription.h"

namespace velmora {

/// What a host does when one of its menu commands runs.
using CommandHandler = std::function<void(NSMenuItem& item)>;

/// An item of a host's menu.
class HeadlessMenuItem final : public NSMenuItem {
public:
    HeadlessMenuItem(const ItemDescription& description, const CommandHandler& handler);

    /// What validation makes of it.
    void validate();

private:
    std::optional<bool> enabledWhenOpened_;
};

/// A menu of a host.
class HeadlessMenu final : public NSMenu {
public:
    HeadlessMenu(std::string title, CommandHandler handler)
        : NSMenu(std::move(title)), handler_(std::move(handler)) {}

    static std::shared_ptr<HeadlessMenu> make(const std::string& title,
                                              const std::vector<ItemDescription>& items,
                                              const CommandHandler& handler);

    /// A submenu as the item describes it: filled, or with a delegate that will fill it.
    static std::shared_ptr<HeadlessMenu> makeSubmenu(const ItemDescription& description,
                                                     const CommandHandler& handler);

    void append(const ItemDescription& description);
    void update() override;

protected:
    void runItem(NSMenuItem& item) override;

private:
    CommandHandler handler_;
    Id filler_;
};

/// The item of that path in the menu: the titles of the menus below it and of the item itself,
/// joined by "/"; null when there is none. Items that open a submenu can be named too. Those of the
/// menu itself before the index `first` are none.
NSMenuItemRef menuItemAtPath(const NSMenu& menu, const std::string& path, int first = 0);

/// The path by which menuItemAtPath finds the item in its outermost menu.
std::string pathOfMenuItem(const NSMenuItem& item);

/// Has the menu filled and its items validated, as opening it does.
void openMenu(NSMenu& menu);

}  // namespace velmora
