#pragma once

#include <memory>
#include <optional>
#include <string>

#include "definitions/VelmoraSetting.h"
#include "definitions/VelmoraSettings.h"
#include "platform/appkit/NSMenu.h"
#include "platform/foundation/NSRunLoop.h"
#include "platform/port/FileSystem.h"

namespace velmora {

/// The base of the components: a definition list with its two files, the look-up of menu items, and
/// the running of one on a later pass of the run loop. A component supplies its name and, where it
/// needs to, what activating its definitions means.
///
/// The application's own file holds all its records; the shared file holds the global ones of all
/// applications and is merged at start and whenever the application becomes active.
///
/// While the component's management panel is open its controller is `ui`; the list then has a
/// backup, which comes back unless the panel is closed by OK.
class VelmoraCommon : public NSObject {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    /// Reads the own file and merges the shared one. Call it once, before anything else.
    virtual void init();

    /// The name of which both file names are made.
    virtual std::string componentName();

    /// The class of the panel's controller. It answers `initWithSettings:delegate:`
    /// (`void(const std::shared_ptr<VelmoraSettings>&, const std::shared_ptr<VelmoraCommon>&)`),
    /// `show` and `updateDisplay` (`void()`).
    virtual Class* uiClass();

    std::string globalSettingsFileName();
    std::string appSpecificSettingsFileName();

    /// Merges the shared file if it changed since the last time: global records that it no longer
    /// holds leave the list, new ones join its end. True when records joined. A file that cannot be
    /// read for a reason that may pass is merged the next time.
    bool mixinGlobals();

    /// mixinGlobals; when records joined, globalsChanged, and an open panel shows them. Before that
    /// the own file is read, if init could not for such a reason, and activated.
    void checkGlobals();

    /// The first definition with exactly that trigger, or null; null for no or an empty trigger.
    virtual VelmoraSettingRef findTrigger(const std::optional<std::string>& trigger);

    /// Opens the panel with a backup of the list, or brings an open one to the front.
    virtual void showPanel();
    /// The panel's controller, or null.
    const Id& ui() const { return ui_; }
    /// The panel's window closes: the controller goes, the list returns to a backup that is left.
    void panelWillClose();

    /// Saves, drops the list's backup and activates the definitions.
    void storeAndActivateSettings();

    /// Writes the own file, and the shared one when an edit touched it.
    void save();
    void saveLocal();
    void saveGlobal();

    /// Applies the definitions to the running application; the base has nothing to do.
    virtual void activateSettings() {}
    /// Reacts to shared records that have joined; the base has nothing to do.
    virtual void globalsChanged() {}

    const std::shared_ptr<VelmoraSettings>& settings() const { return settings_; }

    /// The item of the main menu with the definition's path, else the only one with its action,
    /// else null. Menus that are filled on demand are searched as they are: see updateMenu.
    NSMenuItemRef findMenuItem(const VelmoraSetting& definition);

    /// Walks a menu depth first for the path, and records on the way which items have the action
    /// (the null selector: none).
    NSMenuItemRef findSelector_inMenu_path(Selector wanted, NSMenu& menu, const std::string& path);

    /// Has every menu of the main menu fill and refresh its items. A nested call does nothing.
    void updateMenu();
    void updateMenu(NSMenu& menu);

    /// The path of an item. The reference is good until the next call.
    const std::string& pathFor(const NSMenuItem& item);

    /// Runs the item on a later pass of the run loop in its default mode.
    void executeMenuItemLater(const NSMenuItemRef& item);
    void delayedMenuItemExecution(const NSTimerRef& timer);

protected:
    /// The first leaf of the current look-up with the wanted action, and whether it is the only
    /// one.
    NSMenuItem* weakMatch = nullptr;
    bool weakMatchUnique = true;

private:
    void readOwnFileAgain();

    std::optional<NSDate> timeStamp_;
    /// Or written, so that there is nothing more to learn from it.
    bool ownFileIsRead_ = false;
    std::shared_ptr<VelmoraSettings> settings_;
    Id ui_;
    bool updatingMenu_ = false;
    std::string path_;
};

}  // namespace velmora
