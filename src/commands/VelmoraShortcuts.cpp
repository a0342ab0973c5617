#include "commands/VelmoraShortcuts.h"

#include <algorithm>
#include <utility>

#include "commands/VelmoraTriggers.h"
#include "platform/appkit/NSApplication.h"
#include "platform/foundation/NSNotificationCenter.h"
#include "platform/runtime/Class.h"
#include "platform/runtime/Raised.h"

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

}  // namespace

Class& VelmoraShortcuts::classObject() {
    static auto* object =
        &(new Class("VelmoraShortcuts", &VelmoraCommon::classObject()))
             ->method<&VelmoraShortcuts::menuChangedNotification>("menuChangedNotification:")
             .method<&VelmoraShortcuts::handleEvent>("handleEvent:");
    return *object;
}

Class* VelmoraShortcuts::uiClass() {
    return Class::named("VelmoraShortcutsUI");
}

void VelmoraShortcuts::showPanel() {
    updateMenu();
    VelmoraCommon::showPanel();
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
    searched_.reset();
    setKeys(nullptr);
}

void VelmoraShortcuts::setKeys(const Id& /*sender*/) {
    if (settingKeys_) return;
    // In menus that are as they were there is nothing more to be found.
    const std::uint64_t generation = NSMenu::generation();
    if (std::exchange(searched_, generation) == generation) return;
    const Raised setting(settingKeys_);
    // From the last to the first: what notifications append meanwhile waits for the next call. They
    // may also end in a new list.
    for (std::size_t i = shortcutsToSet_.size(); i-- > 0;) {
        if (i >= shortcutsToSet_.size()) continue;
        const VelmoraSettingRef definition = shortcutsToSet_[i];
        const bool namesItem = !definition->path().empty() || !definition->selector().empty();
        if (namesItem && !isMouseTrigger(definition->trigger())) {
            const NSMenuItemRef item = findMenuItem(*definition);
            if (!item) continue;
            setShortcut_inMenuItem(*definition, *item);
        }
        std::erase(shortcutsToSet_, definition);
    }
}

void VelmoraShortcuts::setShortcut_inMenuItem(const VelmoraSetting& definition, NSMenuItem& item) {
    const std::string& trigger = definition.trigger();
    if (trigger.empty() || isMouseTrigger(trigger)) return;
    const std::string key = keyForTrigger(trigger);
    const std::uint32_t modifiers = modifierFlagsForTrigger(trigger);
    const NSMenuItemRef holder = findShortcut_withModifiers(key, modifiers);
    if (holder && holder.get() != &item) setShortcut_withModifiers_inMenuItem("", 0, *holder);
    setShortcut_withModifiers_inMenuItem(key, modifiers, item);
}

void VelmoraShortcuts::setShortcut_withModifiers_inMenuItem(const std::string& key,
                                                            std::uint32_t modifiers,
                                                            NSMenuItem& item) {
    item.setKeyEquivalent_modifierMask(key, modifiers);
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
        } else if (item->keyEquivalentModifierMask() == modifiers && item->keyEquivalent() == key) {
            return item;
        }
    }
    return nullptr;
}

void VelmoraShortcuts::menuChangedNotification(const NSNotification& notification) {
    auto* menu = dynamic_cast<NSMenu*>(notification.object);
    const NSMenuItemRef item =
        menu ? menu->itemAtIndex(notification.menuItemIndex.value_or(-1)) : nullptr;
    if (item && item->isEnabled()) {
        if (const NSMenuRef submenu = item->submenu()) {
            updateMenu(*submenu);
        } else if (const VelmoraSettingRef definition = definitionNaming(*item)) {
            const bool isPending = std::find(shortcutsToSet_.begin(), shortcutsToSet_.end(),
                                             definition) != shortcutsToSet_.end();
            // The item changes because its shortcut is being written.
            if (isPending && settingKeys_) return;
            if (!isPending) {
                shortcutsToSet_.push_back(definition);
                searched_.reset();
            }
        }
    }
    if (!shortcutsToSet_.empty()) setKeys(nullptr);
}

VelmoraSettingRef VelmoraShortcuts::definitionNaming(const NSMenuItem& item) {
    const std::string& selector = NSStringFromSelector(item.action());
    const std::string& path = pathFor(item);
    const auto& definitions = settings()->array();
    const auto found = std::find_if(
        definitions.begin(), definitions.end(), [&](const VelmoraSettingRef& definition) {
            return definition->path() == path && definition->selector() == selector;
        });
    return found == definitions.end() ? nullptr : *found;
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
    return item->isEnabled() && item->perform();
}

NSMenuItemRef VelmoraShortcuts::itemAtPath(const std::string& path) {
    NSMenuRef menu = NSApp().mainMenu();
    for (std::size_t start = 0; menu;) {
        const std::size_t slash = path.find('/', start);
        const std::string title = path.substr(start, slash - start);
        const NSMenuItemRef item = itemWithTitle(*menu, title);
        if (!item) return nullptr;
        if (!item->isEnabled()) menu->update();
        if (slash == std::string::npos) {
            return item->hasSubmenu() || item->isSeparatorItem() ? nullptr : item;
        }
        menu = item->submenu();
        start = slash + 1;
    }
    return nullptr;
}

}  // namespace velmora
