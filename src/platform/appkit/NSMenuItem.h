#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/runtime/NSObject.h"

namespace velmora {

class NSImage;
class NSMenu;

/// An item of a menu: a command (an action for a target), an item that opens a submenu, or a
/// separator. It is owned by its menu. Desktops derive from it for the host's own items.
class NSMenuItem : public NSObject {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    NSMenuItem() = default;
    NSMenuItem(std::string title, Selector action, std::string keyEquivalent);
    ~NSMenuItem() override;

    static std::shared_ptr<NSMenuItem> initWithTitle_action_keyEquivalent(
        std::string title, Selector action, std::string keyEquivalent);
    static std::shared_ptr<NSMenuItem> separatorItem();

    const std::string& title() const { return title_; }
    void setTitle(std::string title);
    bool isSeparatorItem() const { return separator_; }

    /// The message that the item sends when it is chosen; the null selector for none.
    Selector action() const { return action_; }
    void setAction(Selector action);
    /// The receiver, not kept alive; without one the application is asked.
    Id target() const { return target_.lock(); }
    void setTarget(const Id& target) { target_ = target; }

    const std::string& keyEquivalent() const { return keyEquivalent_; }
    void setKeyEquivalent(std::string key);
    std::uint32_t keyEquivalentModifierMask() const { return keyEquivalentModifierMask_; }
    void setKeyEquivalentModifierMask(std::uint32_t mask);
    /// Both in one change.
    void setKeyEquivalent_modifierMask(std::string key, std::uint32_t mask);
    /// Whether the key equivalent was set while the item stood in a menu. One with which an item
    /// comes gives way to whatever else uses the combination; one that it was given does not.
    bool hasGivenKeyEquivalent() const { return givenKeyEquivalent_; }

    virtual bool isEnabled() const { return enabled_; }
    void setEnabled(bool enabled);

    bool hasSubmenu() const { return submenu_ != nullptr; }
    const std::shared_ptr<NSMenu>& submenu() const { return submenu_; }
    /// The submenu may open from several items; its supermenu is that of the last.
    void setSubmenu(std::shared_ptr<NSMenu> submenu);

    const std::shared_ptr<NSImage>& image() const { return image_; }
    void setImage(std::shared_ptr<NSImage> image);

    const Id& representedObject() const { return representedObject_; }
    void setRepresentedObject(Id object) { representedObject_ = std::move(object); }

    /// Has its menu run it, as performActionForItemAtIndex describes. False when no menu holds it.
    bool perform();

    /// The menu that holds the item, or null. The menu owns the item, not the other way round.
    NSMenu* menu() const { return menu_; }

protected:
    /// For desktops: what the host's own item has, which nobody has given it.
    void followKeyEquivalent(std::string key, std::uint32_t mask);

    bool separator_ = false;

private:
    friend class NSMenu;
    void changed();

    std::string title_;
    Selector action_;
    std::weak_ptr<NSObject> target_;
    std::string keyEquivalent_;
    std::uint32_t keyEquivalentModifierMask_ = 0;
    bool givenKeyEquivalent_ = false;
    bool enabled_ = true;
    std::shared_ptr<NSMenu> submenu_;
    std::shared_ptr<NSImage> image_;
    Id representedObject_;
    NSMenu* menu_ = nullptr;
};

using NSMenuItemRef = std::shared_ptr<NSMenuItem>;

}  // namespace velmora
