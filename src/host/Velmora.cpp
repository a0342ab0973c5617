#include "host/Velmora.h"

#include <algorithm>

#include "definitions/VelmoraSettingsDirectory.h"
#include "gestures/VelmoraGestureFeedbackView.h"
#include "gestures/VelmoraMouseHandling.h"
#include "host/VelmoraApplicationAdditions.h"
#include "platform/appkit/NSApplication.h"
#include "platform/appkit/NSWorkspace.h"
#include "platform/appkit/panels/NSAlert.h"
#include "platform/appkit/panels/NSNibLoading.h"
#include "platform/foundation/NSBundle.h"
#include "platform/foundation/files/PropertyListURL.h"
#include "platform/runtime/Class.h"
#include "platform/runtime/Outlet.h"
#include "product/ProductAddresses.h"
#include "product/Version.h"

namespace velmora {

namespace {

const LoadHook loadHook(&Velmora::load);

ProcessWide<std::shared_ptr<Velmora>> shared;

constexpr const char* itemTitle = "Velmora";

/// Where the item goes: after a new separator in front of the second separator from the end or,
/// where there is none after the first item, before the last of the first four items.
int makePlaceInMenu(NSMenu& menu) {
    int index = menu.numberOfItems();
    int separators = 0;
    while (index > 0 && separators < 2) {
        --index;
        if (menu.itemAtIndex(index)->isSeparatorItem()) ++separators;
    }
    if (index > 0) {
        menu.insertItem_atIndex(NSMenuItem::separatorItem(), index);
        return index + 1;
    }
    return std::max(0, std::min(menu.numberOfItems(), 4) - 1);
}

/// Whether a version above ours is described. A number that is missing is 0.
bool isNewer(const NSDictionary& description) {
    const auto number = [&](std::string_view key) {
        const PropertyList* value = description.objectForKey(key);
        return value ? value->intValue().value_or(0) : 0;
    };
    const int major = number("VersionMajor");
    return major > versionMajor || (major == versionMajor && number("VersionMinor") > versionMinor);
}

/// The version in the place that the text leaves for it.
std::string versionLine(std::string text) {
    constexpr std::string_view placeholder = "x.yy";
    const std::size_t place = text.find(placeholder);
    if (place == std::string::npos) return "Version " + productVersion();
    return text.replace(place, placeholder.size(), productVersion());
}

}  // namespace

Class& Velmora::classObject() {
    static auto* object =
        &(new Class("Velmora", &NSObject::classObject()))
             ->classMethod<&Velmora::applicationDidFinishLaunch>("applicationDidFinishLaunch:")
             .method<&Velmora::applicationDidBecomeActive>("applicationDidBecomeActive:")
             .method<&Velmora::applicationDidShowMainMenu>("applicationDidShowMainMenu:")
             .method<&Outlet<&Velmora::vmMenu_>::set>("setVmMenu:")
             .method<&Outlet<&Velmora::mnemonicPanel_>::set>("setMnemonicPanel:")
             .method<&Outlet<&Velmora::textSnippetsMenu_>::set>("setTextSnippetsMenu:")
             .method<&Outlet<&Velmora::scriptsMenu_>::set>("setScriptsMenu:")
             .method<&Outlet<&Velmora::mnemonicsTF_>::set>("setMnemonicsTF:")
             .method<&Velmora::showMnemonicPanel>("showMnemonicPanel:")
             .method<&Outlet<&Velmora::vmAboutPanel_>::set>("setVmAboutPanel:")
             .method<&Outlet<&Velmora::versionTF_>::set>("setVersionTF:")
             .method<&Velmora::manageGestures>("manageGestures:")
             .method<&Velmora::manageMnemonics>("manageMnemonics:")
             .method<&Velmora::manageShortcuts>("manageShortcuts:")
             .method<&Velmora::manageTextSnippets>("manageTextSnippets:")
             .method<&Velmora::manageScripts>("manageScripts:")
             .method<&Velmora::runPreferences>("runPreferences:")
             .method<&Velmora::defineMnemonics>("defineMnemonics:")
             .method<&Velmora::runAbout>("runAbout:")
             .method<&Velmora::windowWillClose>("windowWillClose:")
             .method<&Velmora::checkVersion>("checkVersion:")
             .method<&Velmora::showHelp>("showHelp:")
             .method<&Velmora::gotoHome>("gotoHome:")
             .method<&Velmora::gotoKorvane>("gotoKorvane:");
    return *object;
}

void Velmora::load() {
    NSNotificationCenter::defaultCenter().addObserver_selector_name_object(
        classObject().asObject(), Selector::named("applicationDidFinishLaunch:"),
        NSApplicationDidFinishLaunchingNotification, &NSApp());
}

void Velmora::applicationDidFinishLaunch(const NSNotification& /*notification*/) {
    if (NSApp().mainMenu()) sharedInstance();
}

std::shared_ptr<Velmora> Velmora::sharedInstance() {
    if (!*shared) {
        shared = std::make_shared<Velmora>();
        (*shared)->init();
    }
    return *shared;
}

std::string Velmora::settingsDirectory() {
    return velmora::settingsDirectory();
}

void Velmora::init() {
    NSMenuItemRef item;
    const Id self = shared_from_this();
    const NSMenuRef mainMenu = NSApp().mainMenu();
    NSPanel::setFrameFile(settingsDirectory() + "/VelmoraFrames.plist");
    if (loadNibNamed_owner(NSBundle::bundleForClass(), "Velmora", self) && vmMenu_ && mainMenu) {
        vmMenu_->setTitle(itemTitle);
        item = installInMainMenu(*mainMenu);
    }
    createComponents();
    defaults_ = std::make_shared<VelmoraDefaults>(VelmoraDefaults::Callbacks{
        [] {
            const VelmoraMouseHandling::Hooks hooks{placeHooks, passEventOn};
            std::make_shared<VelmoraMouseHandling>(hooks)->activate();
        },
        VelmoraGestureFeedbackView::setHue});
    defaults_->initForMenuItem(item);
    if (mnemonicsTF_) mnemonicsTF_->setDelegate(mnemonics_);

    NSNotificationCenter& center = NSNotificationCenter::defaultCenter();
    center.addObserver_selector_name_object(self, Selector::named("applicationDidBecomeActive:"),
                                            NSApplicationDidBecomeActiveNotification, nullptr);
    center.addObserver_selector_name_object(self, Selector::named("applicationDidShowMainMenu:"),
                                            NSApplicationDidShowMainMenuNotification, nullptr);
}

void Velmora::createComponents() {
    gestures_ = std::make_shared<VelmoraGestures>();
    gestures_->init();
    mnemonics_ = std::make_shared<VelmoraMnemonics>();
    mnemonics_->init();
    shortcuts_ = std::make_shared<VelmoraShortcuts>();
    shortcuts_->init();
    textSnippets_ = std::make_shared<VelmoraTextSnippets>();
    textSnippets_->initForMenu(textSnippetsMenu_);
    scripts_ = std::make_shared<VelmoraScripts>();
    scripts_->initForMenu(scriptsMenu_);
}

std::vector<VelmoraCommon*> Velmora::components() const {
    return {gestures_.get(), mnemonics_.get(), shortcuts_.get(), textSnippets_.get(),
            scripts_.get()};
}

NSMenuItemRef Velmora::installInMainMenu(NSMenu& mainMenu) {
    const NSMenuItemRef& first = mainMenu.itemAtIndex(0);
    const NSMenuRef applicationMenu = first ? first->submenu() : nullptr;
    if (!applicationMenu) return nullptr;
    NSMenuItemRef item = NSMenuItem::initWithTitle_action_keyEquivalent(itemTitle, Selector(), "");
    const int index = makePlaceInMenu(*applicationMenu);
    item->setSubmenu(vmMenu_);
    applicationMenu->insertItem_atIndex(item, index);
    return item;
}

void Velmora::applicationDidBecomeActive(const NSNotification& /*notification*/) {
    defaults_->checkDefaults();
    for (VelmoraCommon* component : components()) component->checkGlobals();
}

void Velmora::applicationDidShowMainMenu(const NSNotification& notification) {
    auto* mainMenu = dynamic_cast<NSMenu*>(notification.object);
    const NSMenuItemRef item = mainMenu && vmMenu_ ? installInMainMenu(*mainMenu) : nullptr;
    if (!item) return;
    defaults_->addMenuItem(item);
}

void Velmora::manageGestures(const Id& /*sender*/) {
    gestures_->showPanel();
}

void Velmora::manageMnemonics(const Id& /*sender*/) {
    mnemonics_->showPanel();
}

void Velmora::manageShortcuts(const Id& /*sender*/) {
    shortcuts_->showPanel();
}

void Velmora::manageTextSnippets(const Id& /*sender*/) {
    textSnippets_->showPanel();
}

void Velmora::manageScripts(const Id& /*sender*/) {
    scripts_->showPanel();
}

void Velmora::runPreferences(const Id& /*sender*/) {
    defaults_->showPanel();
}

void Velmora::defineMnemonics(const Id& /*sender*/) {
    NSApp().stopModal();
    manageMnemonics(shared_from_this());
}

void Velmora::showMnemonicPanel(const Id& /*sender*/) {
    if (!mnemonicPanel_ || !mnemonicsTF_ || mnemonicPanel_->isVisible()) return;
    const NSEventRef event = NSApp().currentEvent();
    const NSWindowRef window = event ? NSApp().windowWithNumber(event->windowNumber()) : nullptr;
    mnemonicsTF_->setStringValue("");
    if (window) {
        const NSRect around = window->frame();
        const NSSize size = mnemonicPanel_->frame().size;
        mnemonicPanel_->setFrameOrigin(
            {around.origin.x + around.size.width / 2 - size.width / 2,
             around.origin.y + around.size.height / 2 - size.height / 2});
    } else {
        mnemonicPanel_->center();
    }
    mnemonicPanel_->makeKeyAndOrderFront();
    const int code = NSApp().runModalForWindow(*mnemonicPanel_);
    mnemonicPanel_->orderOut();
    if (code == 1) mnemonics_->executeMnemonic();
}

void Velmora::runAbout(const Id& /*sender*/) {
    if (!vmAboutPanel_) {
        loadNibNamed_owner(NSBundle::bundleForClass(), "AboutPanel", shared_from_this());
        if (versionTF_) versionTF_->setStringValue(versionLine(versionTF_->stringValue()));
    }
    if (vmAboutPanel_) vmAboutPanel_->makeKeyAndOrderFront();
}

void Velmora::windowWillClose(const NSNotification& notification) {
    if (!vmAboutPanel_ || notification.object != vmAboutPanel_.get()) return;
    // The panel itself is telling this.
    NSRunLoop::currentRunLoop().keepUntilNextPass(std::move(vmAboutPanel_));
    vmAboutPanel_ = nullptr;
}

void Velmora::checkVersion(const Id& /*sender*/) {
    const auto description = dictionaryWithContentsOfURL(updateDescription());
    if (!description) {
        NSRunAlertPanel("", localized("Can not connect to Velmora site!"), "", "", "");
        return;
    }
    if (!isNewer(*description)) {
        NSRunInformationalAlertPanel(localized("Your Velmora version is up to date!"), "", "", "",
                                     "");
        return;
    }
    const PropertyList* page = description->objectForKey("UpdateURL");
    const std::string address = page && page->string() ? *page->string() : "";
    if (address.starts_with("http://") || address.starts_with("https://")) {
        NSWorkspace::sharedWorkspace().openURL(address);
    }
}

void Velmora::showHelp(const Id& /*sender*/) {
    const auto manual = NSBundle::bundleForClass().pathForResource_ofType("Manual", "");
    if (!manual) return;
    NSWorkspace::sharedWorkspace().openURL(fileURLWithPath(*manual + "/index.html"));
}

void Velmora::gotoHome(const Id& /*sender*/) {
    NSWorkspace::sharedWorkspace().openURL(productHomePage());
}

void Velmora::gotoKorvane(const Id& /*sender*/) {
    NSWorkspace::sharedWorkspace().openURL(makerHomePage());
}

}  // namespace velmora
