#include "definitions/VelmoraCommon.h"

#include <functional>
#include <string_view>
#include <unordered_map>

#include "definitions/VelmoraSettingsDirectory.h"
#include "definitions/VelmoraUtils.h"
#include "platform/appkit/NSApplication.h"
#include "platform/port/Desktop.h"
#include "platform/runtime/Class.h"
#include "platform/runtime/NSLog.h"
#include "platform/runtime/Raised.h"

namespace velmora {

namespace {

/// What isEqualTo: compares, as a key of hash tables.
struct SameContent {
    bool operator()(const VelmoraSetting* a, const VelmoraSetting* b) const {
        return a->isEqualTo(*b);
    }
};
struct ContentHash {
    std::size_t operator()(const VelmoraSetting* record) const {
        const std::hash<std::string_view> hash;
        return (hash(record->path()) * 31 + hash(record->trigger())) * 31 +
               hash(record->selector());
    }
};

}  // namespace

Class& VelmoraCommon::classObject() {
    static auto* object =
        &(new Class("VelmoraCommon", &NSObject::classObject()))
             ->method<&VelmoraCommon::delayedMenuItemExecution>("delayedMenuItemExecution:");
    return *object;
}

void VelmoraCommon::init() {
    settings_ = std::make_shared<VelmoraSettings>();
    ownFileIsRead_ =
        settings_->initWithContentsOfFile_forceGlobal(appSpecificSettingsFileName(), false);
    mixinGlobals();
}

std::string VelmoraCommon::componentName() {
    NSLog("Subclass must implement componentName method");
    return {};
}

Class* VelmoraCommon::uiClass() {
    NSLog("Subclass must implement 'uiClass' method");
    return Class::named("VelmoraCommonUI");
}

std::string VelmoraCommon::globalSettingsFileName() {
    return settingsDirectory() + "/Velmora" + componentName() + ".plist";
}

std::string VelmoraCommon::appSpecificSettingsFileName() {
    return settingsDirectory() + "/" + desktop().processName() + componentName() + ".plist";
}

bool VelmoraCommon::mixinGlobals() {
    const std::string file = globalSettingsFileName();
    std::optional<NSDate> date = timeStamp_;
    if (FileSystem& files = desktop().files(); files.fileExistsAtPath(file)) {
        date = files.modificationDate(file);
        if (timeStamp_ && timeStamp_ == date) return false;
    }
    VelmoraSettings shared;
    if (!shared.initWithContentsOfFile_forceGlobal(file, true)) return false;
    timeStamp_ = date;

    // Each own record takes the first equal shared record that is left. The shared records of one
    // content are interchangeable, so counting them serves; the first ones are those taken.
    using Counts = std::unordered_map<const VelmoraSetting*, int, ContentHash, SameContent>;
    Counts left;
    for (const VelmoraSettingRef& record : shared.array()) ++left[record.get()];
    Counts taken;
    std::vector<VelmoraSettingRef> held;
    if (ui_) held = settings_->array();
    std::vector<VelmoraSettingRef>& list = settings_->array();
    std::vector<VelmoraSettingRef> kept;
    kept.reserve(list.size());
    for (auto own = list.rbegin(); own != list.rend(); ++own) {
        const auto found = (*own)->isGlobal() ? left.find(own->get()) : left.end();
        const bool isShared = found != left.end() && found->second > 0;
        if (isShared) {
            --found->second;
            ++taken[found->first];
        }
        if (isShared || !(*own)->isGlobal()) {
            kept.push_back(*own);
        } else {
            settings_->setGlobalChanged(true);
        }
    }
    list.assign(kept.rbegin(), kept.rend());
    // What an open panel has changed stands in no file.
    if (settings_->array().size() < held.size()) {
        VelmoraSettings::keepVersion(held, appSpecificSettingsFileName());
    }
    std::vector<VelmoraSettingRef> added;
    for (const VelmoraSettingRef& record : shared.array()) {
        const auto found = taken.find(record.get());
        if (found != taken.end() && found->second > 0) {
            --found->second;
        } else {
            added.push_back(record);
        }
    }
    settings_->addObjectsFromArray(added);
    return !added.empty();
}

void VelmoraCommon::checkGlobals() {
    readOwnFileAgain();
    if (!mixinGlobals()) return;
    globalsChanged();
    if (ui_) message<void()>(*ui_, Selector::named("updateDisplay"));
}

void VelmoraCommon::readOwnFileAgain() {
    if (ownFileIsRead_ || ui_) return;
    VelmoraSettings own;
    if (!own.initWithContentsOfFile_forceGlobal(appSpecificSettingsFileName(), false)) return;
    ownFileIsRead_ = true;
    // The shared records have their places in the own file.
    settings_->array() = std::move(own.array());
    timeStamp_.reset();
    mixinGlobals();
    activateSettings();
}

void VelmoraCommon::showPanel() {
    if (!ui_) {
        Class* controller = uiClass();
        ui_ = controller ? controller->alloc() : nullptr;
        if (!ui_) return;
        using Init =
            void(const std::shared_ptr<VelmoraSettings>&, const std::shared_ptr<VelmoraCommon>&);
        message<Init>(*ui_, Selector::named("initWithSettings:delegate:"), settings_,
                      std::static_pointer_cast<VelmoraCommon>(shared_from_this()));
        settings_->createBackup();
    }
    message<void()>(*ui_, Selector::named("show"));
}

void VelmoraCommon::panelWillClose() {
    if (!ui_) return;
    // The call comes from the controller's own window.
    NSRunLoop::currentRunLoop().keepUntilNextPass(std::move(ui_));
    ui_ = nullptr;
    settings_->revert();
}

VelmoraSettingRef VelmoraCommon::findTrigger(const std::optional<std::string>& trigger) {
    if (!trigger || trigger->empty()) return nullptr;
    for (const VelmoraSettingRef& definition : settings_->array()) {
        if (definition->trigger() == *trigger) return definition;
    }
    return nullptr;
}

void VelmoraCommon::storeAndActivateSettings() {
    save();
    settings_->deleteBackup();
    activateSettings();
}

void VelmoraCommon::save() {
    saveLocal();
    if (settings_->globalChanged()) {
        saveGlobal();
        settings_->setGlobalChanged(false);
    }
}

void VelmoraCommon::saveLocal() {
    ownFileIsRead_ = true;
    settings_->saveSettingsWithGlobalFlag_toFile(false, appSpecificSettingsFileName());
}

void VelmoraCommon::saveGlobal() {
    settings_->saveSettingsWithGlobalFlag_toFile(true, globalSettingsFileName());
}

NSMenuItemRef VelmoraCommon::findMenuItem(const VelmoraSetting& definition) {
    const std::string& selector = definition.selector();
    const std::string& path = definition.path();
    if (selector.empty() && path.empty()) return nullptr;
    updatingMenu_ = false;
    weakMatch = nullptr;
    weakMatchUnique = true;
    const Selector wanted = NSSelectorFromString(selector);
    const NSMenuRef mainMenu = NSApp().mainMenu();
    if (!mainMenu) return nullptr;
    if (NSMenuItemRef item = findSelector_inMenu_path(wanted, *mainMenu, path)) return item;
    if (!weakMatch || !weakMatchUnique) return nullptr;
    return std::static_pointer_cast<NSMenuItem>(weakMatch->shared_from_this());
}

NSMenuItemRef VelmoraCommon::findSelector_inMenu_path(Selector wanted, NSMenu& menu,
                                                      const std::string& path) {
    const int count = menu.numberOfItems();
    for (int i = 0; i < count; ++i) {
        const NSMenuItemRef& item = menu.itemAtIndex(i);
        if (!item) break;
        if (item->hasSubmenu()) {
            if (NSMenuItemRef found = findSelector_inMenu_path(wanted, *item->submenu(), path)) {
                return found;
            }
            continue;
        }
        if (item->action() == wanted) {
            if (weakMatch) {
                weakMatchUnique = false;
            } else {
                weakMatch = item.get();
            }
        }
        if (VelmoraUtils::mayHavePath(*item, path) && pathFor(*item) == path) return item;
    }
    return nullptr;
}

void VelmoraCommon::updateMenu() {
    if (updatingMenu_) return;
    const Raised updating(updatingMenu_);
    if (const NSMenuRef mainMenu = NSApp().mainMenu()) updateMenu(*mainMenu);
}

void VelmoraCommon::updateMenu(NSMenu& menu) {
    static const Selector menuNeedsUpdate = Selector::named("menuNeedsUpdate:");
    const Id delegate = menu.delegate();
    if (delegate && delegate->respondsToSelector(menuNeedsUpdate)) {
        message<void(NSMenu&)>(*delegate, menuNeedsUpdate, menu);
    }
    for (int i = 0; i < menu.numberOfItems(); ++i) {
        // The submenu may go while its delegate is asked.
        const NSMenuRef submenu = menu.itemAtIndex(i)->submenu();
        if (submenu) updateMenu(*submenu);
    }
}

const std::string& VelmoraCommon::pathFor(const NSMenuItem& item) {
    VelmoraUtils::setMenuItemPath(item, path_);
    return path_;
}

void VelmoraCommon::executeMenuItemLater(const NSMenuItemRef& item) {
    static const Selector execution = Selector::named("delayedMenuItemExecution:");
    NSTimer::scheduledTimerWithTimeInterval_target_selector_userInfo_repeats(
        0.0, shared_from_this(), execution, item, false);
}

void VelmoraCommon::delayedMenuItemExecution(const NSTimerRef& timer) {
    const auto item = std::dynamic_pointer_cast<NSMenuItem>(timer->userInfo());
    if (item) item->perform();
}

}  // namespace velmora
