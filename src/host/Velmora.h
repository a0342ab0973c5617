#pragma once

#include <memory>
#include <string>

#include "commands/VelmoraMnemonics.h"
#include "commands/VelmoraScripts.h"
#include "commands/VelmoraShortcuts.h"
#include "commands/VelmoraTextSnippets.h"
#include "definitions/VelmoraCommon.h"
#include "gestures/VelmoraGestures.h"
#include "platform/appkit/NSMenu.h"
#include "platform/foundation/NSNotificationCenter.h"
#include "preferences/VelmoraDefaults.h"

namespace velmora {

/// The suite controller: the one object through which the system enters a host. Created when the
/// host has finished launching with a main menu, and kept until the process ends.
class Velmora final : public NSObject {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    /// Run when the program is loaded into a host: waits for the host to finish launching.
    static void load();
    static void applicationDidFinishLaunch(const NSNotification& notification);
    /// The controller, created on the first call.
    static std::shared_ptr<Velmora> sharedInstance();
    /// See definitions/VelmoraSettingsDirectory.h.
    static std::string settingsDirectory();

    /// Installs the "Velmora" submenu and creates the components and the preferences.
    void init();

    /// Has the preferences, then each component, take over what other processes changed.
    void applicationDidBecomeActive(const NSNotification& notification);

    /// Puts the "Velmora" item into a further window's menu bar.
    void applicationDidShowMainMenu(const NSNotification& notification);

    void showHelp(const Id& sender);
    void gotoHome(const Id& sender);
    void gotoKorvane(const Id& sender);

private:
    void setVmMenu(const Id& menu);
    NSMenuItemRef installInMainMenu(NSMenu& mainMenu);

    NSMenuRef vmMenu_;
    std::shared_ptr<VelmoraGestures> gestures_;
    std::shared_ptr<VelmoraDefaults> defaults_;
};

}  // namespace velmora
