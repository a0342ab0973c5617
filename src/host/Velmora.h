#pragma once

#include <memory>
#include <string>
#include <vector>

#include "commands/VelmoraMnemonics.h"
#include "commands/VelmoraScripts.h"
#include "commands/VelmoraShortcuts.h"
#include "commands/VelmoraTextSnippets.h"
#include "definitions/VelmoraCommon.h"
#include "gestures/VelmoraGestures.h"
#include "platform/appkit/NSMenu.h"
#include "platform/appkit/panels/NSPanel.h"
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

    const std::shared_ptr<VelmoraShortcuts>& shortcuts() const { return shortcuts_; }

    /// Runs the mnemonic panel, centred on the window of the current event, and then the command
    /// that was named in it.
    void showMnemonicPanel(const Id& sender);

    /// Has the preferences, then each component, take over what other processes changed.
    void applicationDidBecomeActive(const NSNotification& notification);

    /// Puts the "Velmora" item into a further window's menu bar.
    void applicationDidShowMainMenu(const NSNotification& notification);

    // Open the components' panels and that of the preferences.
    void manageGestures(const Id& sender);
    void manageMnemonics(const Id& sender);
    void manageShortcuts(const Id& sender);
    void manageTextSnippets(const Id& sender);
    void manageScripts(const Id& sender);
    void runPreferences(const Id& sender);
    /// Ends the mnemonic panel and opens the panel in which mnemonics are defined.
    void defineMnemonics(const Id& sender);

    /// Opens the About panel, or brings an open one to the front.
    void runAbout(const Id& sender);
    /// The About panel closes: the next one is made anew.
    void windowWillClose(const NSNotification& notification);

    /// Asks the product's site for the newest version: opens its page, or says that there is none
    /// or that the site is out of reach. The host waits meanwhile, for ten seconds at the most.
    void checkVersion(const Id& sender);
    void showHelp(const Id& sender);
    void gotoHome(const Id& sender);
    void gotoKorvane(const Id& sender);

private:
    std::vector<VelmoraCommon*> components() const;
    void createComponents();
    NSMenuItemRef installInMainMenu(NSMenu& mainMenu);

    NSMenuRef vmMenu_;
    NSPanelRef mnemonicPanel_;
    NSMenuRef textSnippetsMenu_;
    NSMenuRef scriptsMenu_;
    std::shared_ptr<NSTextField> mnemonicsTF_;
    std::shared_ptr<VelmoraGestures> gestures_;
    std::shared_ptr<VelmoraMnemonics> mnemonics_;
    std::shared_ptr<VelmoraShortcuts> shortcuts_;
    std::shared_ptr<VelmoraTextSnippets> textSnippets_;
    std::shared_ptr<VelmoraScripts> scripts_;
    std::shared_ptr<VelmoraDefaults> defaults_;
    /// Null while it is not open.
    NSPanelRef vmAboutPanel_;
    std::shared_ptr<NSTextField> versionTF_;
};

}  // namespace velmora
