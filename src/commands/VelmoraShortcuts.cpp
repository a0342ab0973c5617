#include "commands/VelmoraShortcuts.h"

#include <algorithm>
#include <utility>

#include "commands/VelmoraTriggers.h"
#include "platform/appkit/NSApplication.h"
#include "platform/foundation/NSNotificationCenter.h"
#include "platform/runtime/Class.h"

namespace velmora {

namespace {

/// Sets a flag while it lives, whatever is thrown meanwhile.
class During {
public:
    explicit During(bool& flag) : flag_(flag) { flag_ = true; }
    ~During() { flag_ = false; }
    During(const During&) = delete;
    During& operator=(const During&) = delete;

private:
    bool& flag_;
};

/// Whether menu items can have the trigger: the bare digit stands for none.
bool isForItems(const std::string& trigger) {
    return !trigger.empty() && !isMouseTrigger(trigger);
}

bool namesItem(const VelmoraSetting& definition) {
    return !definition.path().empty() || !definition.selector().empty();
}

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
std::vector<NSMenuItemRef> ownersOf(const std::string& key, std::uint32_t modifiers, NSMenu& menu) {
    std::vector<NSMenuItemRef> owners;
    appendOwners(key, modifiers, menu, owners);
    return owners;
}

/// Whether no other item has the key equivalent and mask of this one.
bool isOnlyOwner(const NSMenuItem& item) {
    const NSMenuRef mainMenu = NSApp().mainMenu();
    return !mainMenu ||
           ownersOf(item.keyEquivalent(), item.keyEquivalentModifierMask(), *mainMenu).size() <= 1;
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
    const std::uint64_t generation = NSMenu::generation();
    if (std::exchange(searched_, generation) == generation) return;
    const During guard(settingKeys_);
    // From the last to the first: what notifications append meanwhile waits for the next call. They
    // may also end in a new list.
    for (std::size_t i = shortcutsToSet_.size(); i-- > 0;) {
        if (i >= shortcutsToSet_.size()) continue;
        const VelmoraSettingRef definition = shortcutsToSet_[i];
        if (namesItem(*definition) && isForItems(definition->trigger())) {
            const NSMenuItemRef item = itemOf(*definition);
            if (!item || waitsForEarlier(*definition, *item)) continue;
            setShortcut_inMenuItem(*definition, *item);
        }
        const auto written = std::find(shortcutsToSet_.begin(), shortcutsToSet_.end(), definition);
        if (written != shortcutsToSet_.end()) shortcutsToSet_.erase(written);
    }
}

/// The item of a definition without a selector may be the menu bar's only separator, which has no
/// action either.
NSMenuItemRef VelmoraShortcuts::itemOf(const VelmoraSetting& definition) {
    const NSMenuItemRef item = findMenuItem(definition);
    return item && item->isSeparatorItem() ? nullptr : item;
}

/// Without this two definitions of one combination would take it from each other at every change of
/// the menus.
bool VelmoraShortcuts::waitsForEarlier(const VelmoraSetting& definition, const NSMenuItem& item) {
    if (keyForTrigger(definition.trigger()).empty()) return false;
    for (const VelmoraSettingRef& earlier : settings()->array()) {
        if (earlier.get() == &definition) return false;
        if (!isSameCombination(earlier->trigger(), definition.trigger())) continue;
        const NSMenuItemRef other = itemOf(*earlier);
        if (other && other.get() != &item) return true;
    }
    return false;
}

void VelmoraShortcuts::setShortcut_inMenuItem(const VelmoraSetting& definition, NSMenuItem& item) {
    const std::string& trigger = definition.trigger();
    if (!isForItems(trigger)) return;
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
        } else if (item->keyEquivalent() == key && item->keyEquivalentModifierMask() == modifiers) {
            return item;
        }
    }
    return nullptr;
}

void VelmoraShortcuts::menuChangedNotification(const NSNotification& notification) {
    auto* menu = dynamic_cast<NSMenu*>(notification.object);
    const NSMenuItemRef item =
        menu ? menu->itemAtIndex(notification.menuItemIndex.value_or(-1)) : nullptr;
    if (item) itemChanged(*item);
    if (!shortcutsToSet_.empty()) setKeys(nullptr);
}

void VelmoraShortcuts::itemChanged(const NSMenuItem& item) {
    const NSMenuRef submenu = item.submenu();
    if (!submenu) {
        leafChanged(item);
        return;
    }
    // A host that changes the item while it fills the menu would have it filled again, and again.
    if (item.isEnabled() && !fillingMenus_) {
        const During guard(fillingMenus_);
        updateMenu(*submenu);
    }
    // It may have come with items that nobody has told of.
    leavesChanged(*submenu);
}

void VelmoraShortcuts::leavesChanged(const NSMenu& menu) {
    // A look at the main menu may bring it up to date.
    const std::vector<NSMenuItemRef> items = menu.itemArray();
    for (const NSMenuItemRef& item : items) {
        if (const NSMenuRef submenu = item->submenu()) {
            leavesChanged(*submenu);
        } else {
            leafChanged(*item);
        }
    }
}

/// Makes those definitions pending that are to be written because of the item.
void VelmoraShortcuts::leafChanged(const NSMenuItem& item) {
    if (item.isEnabled()) {
        const VelmoraSettingRef definition = definitionNaming(item);
        if (definition && !isTriggerOfMenuItem(definition->trigger(), item)) addPending(definition);
    }
    // The host may have given the item a combination that is another's. While keys are set, it was
    // given by us.
    if (settingKeys_ || item.keyEquivalent().empty()) return;
    const auto claims = [&](const VelmoraSettingRef& definition) {
        return isTriggerOfMenuItem(definition->trigger(), item) && namesItem(*definition);
    };
    const auto& definitions = settings()->array();
    const auto first = std::find_if(definitions.begin(), definitions.end(), claims);
    if (first == definitions.end()) return;
    if ((*first)->path() == pathFor(item) && isOnlyOwner(item)) return;
    std::for_each(first, definitions.end(), [&](const VelmoraSettingRef& definition) {
        if (claims(definition)) addPending(definition);
    });
}

VelmoraSettingRef VelmoraShortcuts::definitionNaming(const NSMenuItem& item) {
    const std::string& selector = NSStringFromSelector(item.action());
    const std::string* path = nullptr;
    for (const VelmoraSettingRef& definition : settings()->array()) {
        if (definition->selector() != selector || !isForItems(definition->trigger())) continue;
        if (!path) path = &pathFor(item);
        if (definition->path() == *path) return definition;
    }
    return nullptr;
}

void VelmoraShortcuts::addPending(const VelmoraSettingRef& definition) {
    if (std::find(shortcutsToSet_.begin(), shortcutsToSet_.end(), definition) ==
        shortcutsToSet_.end()) {
        shortcutsToSet_.push_back(definition);
        searched_.reset();
    }
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
        const std::string title = path.substr(start, slash - start);
        NSMenuItemRef item = itemWithTitle(*menu, title);
        if (item && !item->isEnabled()) {
            // Which may put another item in its place.
            menu->update();
            if (item->menu() != menu.get()) item = itemWithTitle(*menu, title);
        }
        if (!item) return nullptr;
        if (slash == std::string::npos) {
            return item->hasSubmenu() || item->isSeparatorItem() ? nullptr : item;
        }
        menu = item->submenu();
        start = slash + 1;
    }
    return nullptr;
}

}  // namespace velmora
