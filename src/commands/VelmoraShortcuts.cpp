#include "commands/VelmoraShortcuts.h"

#include <algorithm>

#include "commands/VelmoraTriggers.h"
#include "platform/appkit/NSApplication.h"
#include "platform/foundation/NSNotificationCenter.h"
#include "platform/runtime/Class.h"

namespace velmora {

namespace {

/// The item with the title, asking the menu to bring itself up to date when there is none.
NSMenuItemRef itemWithTitle(NSMenu& menu, const std::string& title) {
    int index = menu.indexOfItemWithTitle(title);
    if (index < 0) {
        menu.update();
        index = menu.indexOfItemWithTitle(title);
    }
    return menu.itemAtIndex(index);
}

void appendOwners(const std::string& key, std::uint32_t modifiers, NSMenu& menu,
                  std::vector<NSMenuItemRef>& owners) {
    for (const NSMenuItemRef& item : menu.itemArray()) {
        if (item->hasSubmenu()) {
            appendOwners(key, modifiers, *item->submenu(), owners);
        } else if (item->keyEquivalentModifierMask() == modifiers && item->keyEquivalent() == key) {
            owners.push_back(item);
        }
    }
}

/// Every item with that key equivalent and mask: clearing one changes menus, so they are collected
/// first.
std::vector<NSMenuItemRef> ownersOf(const std::string& key, std::uint32_t modifiers,
                                    NSMenu& menu) {
    std::vector<NSMenuItemRef> owners;
    appendOwners(key, modifiers, menu, owners);
    return owners;
}

}  // namespace

Class& VelmoraShortcuts::classObject() {
    static auto* object =
        &(new Class("VelmoraShortcuts", &VelmoraCommon::classObject()))
             ->method<&VelmoraShortcuts::menuChangedNotification>("menuChangedNotification:")
             .method<&VelmoraShortcuts::handleEvent>("handleEvent:");
    return *object;
}

void VelmoraShortcuts::init() {
    VelmoraCommon::init();
    shortcutsToSet_.reserve(16);
    activateSettings();
    NSNotificationCenter& center = NSNotificationCenter::defaultCenter();
    const Selector changed = Selector::named("menuChangedNotification:");
    for (const auto name : {NSMenuDidAddItemNotification, NSMenuDidChangeItemNotification}) {
        center.addObserver_selector_name_object(shared_from_this(), changed, name, nullptr);
    }
}

void VelmoraShortcuts::activateSettings() {
    shortcutsToSet_ = settings()->array();
    setKeys(nullptr);
}

void VelmoraShortcuts::setKeys(const Id& /*sender*/) {
    if (settingKeys_) return;
    settingKeys_ = true;
    // From the last to the first: what notifications append meanwhile waits for the next call.
    for (std::size_t i = shortcutsToSet_.size(); i-- > 0;) {
        const VelmoraSettingRef definition = shortcutsToSet_[i];
        const bool names = !definition->path().empty() || !definition->selector().empty();
        if (names && !isMouseTrigger(definition->trigger())) {
            const NSMenuItemRef item = findMenuItem(*definition);
            if (!item) continue;
            setShortcut_inMenuItem(*definition, *item);
        }
        shortcutsToSet_.erase(shortcutsToSet_.begin() + static_cast<std::ptrdiff_t>(i));
    }
    settingKeys_ = false;
}

void VelmoraShortcuts::setShortcut_inMenuItem(const VelmoraSetting& definition, NSMenuItem& item) {
    const std::string& trigger = definition.trigger();
    if (trigger.empty() || isMouseTrigger(trigger)) return;
    const std::string key = keyForTrigger(trigger);
    const std::uint32_t modifiers = modifierFlagsForTrigger(trigger);
    // With two owners of a combination neither would run.
    if (const NSMenuRef mainMenu = NSApp().mainMenu(); mainMenu && !key.empty()) {
        for (const NSMenuItemRef& owner : ownersOf(key, modifiers, *mainMenu)) {
            if (owner.get() != &item) setShortcut_withModifiers_inMenuItem("", 0, *owner);
        }
    }
    setShortcut_withModifiers_inMenuItem(key, modifiers, item);
}

void VelmoraShortcuts::setShortcut_withModifiers_inMenuItem(const std::string& key,
                                                            std::uint32_t modifiers,
                                                            NSMenuItem& item) {
    item.setKeyEquivalentModifierMask(modifiers);
    item.setKeyEquivalent(key);
}

NSMenuItemRef VelmoraShortcuts::findShortcut_withModifiers(const std::string& key,
                                                           std::uint32_t modifiers) {
    const NSMenuRef mainMenu = NSApp().mainMenu();
    return mainMenu ? findShortcut_withModifiers_inMenu(key, modifiers, *mainMenu) : nullptr;
}

NSMenuItemRef VelmoraShortcuts::findShortcut_withModifiers_inMenu(const std::string& key,
                                                                  std::uint32_t modifiers,
                                                                  NSMenu& menu) {
    if (key.empty()) return nullptr;
    for (int i = 0; i < menu.numberOfItems(); ++i) {
        const NSMenuItemRef& item = menu.itemAtIndex(i);
        if (item->hasSubmenu()) {
            if (auto found = findShortcut_withModifiers_inMenu(key, modifiers, *item->submenu())) {
                return found;
            }
        } else if (item->keyEquivalent() == key && item->keyEquivalentModifierMask() == modifiers) {
            return item;
        }
    }
    return nullptr;
}

void VelmoraShortcuts::menuChangedNotification(const NSNotification& notification) {
    auto* menu = dynamic_cast<NSMenu*>(notification.object);
    const NSMenuItemRef item = menu ? menu->itemAtIndex(notification.menuItemIndex.value_or(-1))
                                    : nullptr;
    if (item && item->isEnabled()) {
        if (item->hasSubmenu()) {
            const NSMenuRef submenu = item->submenu();
            updateMenu(*submenu);
        } else if (const VelmoraSettingRef definition = definitionNaming(*item)) {
            if (!isPending(definition)) {
                shortcutsToSet_.push_back(definition);
            } else if (settingKeys_) {
                return;
            }
        }
    }
    if (!shortcutsToSet_.empty()) setKeys(nullptr);
}

VelmoraSettingRef VelmoraShortcuts::definitionNaming(const NSMenuItem& item) {
    const std::string& selector = NSStringFromSelector(item.action());
    const std::string* path = nullptr;
    for (const VelmoraSettingRef& definition : settings()->array()) {
        if (definition->selector() != selector) continue;
        if (!path) path = &pathFor(item);
        if (definition->path() == *path) return definition;
    }
    return nullptr;
}

bool VelmoraShortcuts::isPending(const VelmoraSettingRef& definition) const {
    return std::find(shortcutsToSet_.begin(), shortcutsToSet_.end(), definition) !=
           shortcutsToSet_.end();
}

bool VelmoraShortcuts::handleEvent(const NSEventRef& event) {
    const std::string key = event->type() == NSOtherMouseDown
                                ? keyForMouseButton(event->buttonNumber())
                                : event->fields().charactersIgnoringModifiers;
    if (key.empty()) return false;
    const std::string trigger = triggerForKey_modifierFlags(key, event->modifierFlags());
    const auto& definitions = settings()->array();
    const auto found = std::find_if(
        definitions.begin(), definitions.end(),
        [&](const VelmoraSettingRef& definition) { return definition->trigger() == trigger; });
    if (found == definitions.end() || (*found)->path().empty()) return false;
    const VelmoraSettingRef definition = *found;
    const NSMenuItemRef item = itemAtPath(definition->path());
    if (!item) return false;
    // The application may have put its own combination back.
    setShortcut_inMenuItem(*definition, *item);
    NSMenu* menu = item->menu();
    if (!item->isEnabled() || !menu) return false;
    const int index = menu->indexOfItem(*item);
    if (index < 0) return false;
    menu->performActionForItemAtIndex(index);
    return true;
}

NSMenuItemRef VelmoraShortcuts::itemAtPath(const std::string& path) {
    NSMenuRef menu = NSApp().mainMenu();
    for (std::size_t start = 0; menu;) {
        const std::size_t slash = path.find('/', start);
        NSMenuItemRef item = itemWithTitle(*menu, path.substr(start, slash - start));
        if (!item) return nullptr;
        if (!item->isEnabled()) menu->update();
        if (slash == std::string::npos) return item;
        menu = item->submenu();
        start = slash + 1;
    }
    return nullptr;
}

}  // namespace velmora
