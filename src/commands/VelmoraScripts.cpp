#include "commands/VelmoraScripts.h"

#include <string_view>

#include "commands/VelmoraShortcutFormatter.h"
#include "commands/VelmoraTriggers.h"
#include "definitions/VelmoraUtils.h"
#include "platform/appkit/NSApplication.h"
#include "platform/appkit/NSWorkspace.h"
#include "platform/foundation/files/Characters.h"
#include "platform/foundation/scripts/LuaScript.h"
#include "platform/foundation/scripts/NSTask.h"
#include "platform/port/Desktop.h"
#include "platform/port/ScriptFile.h"
#include "platform/runtime/Class.h"
#include "platform/runtime/NSLog.h"

namespace velmora {

namespace {

constexpr const char* scriptPath = "/tmp/_velmoraScript_";
constexpr NSTimeInterval startDelay = 0.2;

std::string asciiData(std::string_view text) {
    std::string bytes;
    bytes.reserve(text.size());
    while (!text.empty()) {
        const char32_t character = firstCharacter(text);
        bytes += character < 0x80 ? static_cast<char>(character) : '?';
        text.remove_prefix(firstCharacterLength(text));
    }
    return bytes;
}

/// The text as it stands between quotation marks, in one line.
std::string quotable(const std::string& text) {
    static constexpr std::string_view digits = "0123456789abcdef";
    std::string quoted;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\') {
            quoted += {'\\', c};
        } else if (c == '\n') {
            quoted += "\\n";
        } else if (byte < 0x20 || byte == 0x7f) {
            quoted += {'\\', 'x', digits[byte >> 4U], digits[byte & 15U]};
        } else {
            quoted += c;
        }
    }
    return quoted;
}

void appendItems(const NSMenu& menu, std::vector<ScriptHost::MenuItem>& items) {
    for (const NSMenuItemRef& item : menu.itemArray()) {
        if (item->hasSubmenu()) {
            appendItems(*item->submenu(), items);
        } else if (!item->isSeparatorItem()) {
            const PropertyList trigger = triggerForMenuItem(*item);
            items.push_back({VelmoraUtils::menuItemPathFor(*item), item->title(),
                             VelmoraShortcutFormatter().stringForObjectValue(&trigger),
                             item->isEnabled()});
        }
    }
}

}  // namespace

Class& VelmoraScripts::classObject() {
    static auto* object = &(new Class("VelmoraScripts", &VelmoraTextSnippets::classObject()))
                               ->method<&VelmoraScripts::runDelayed>("runDelayed:");
    return *object;
}

Class* VelmoraScripts::uiClass() {
    return Class::named("VelmoraScriptsUI");
}

void VelmoraScripts::runWithSetting(const VelmoraSettingRef& definition) {
    NSTimer::scheduledTimerWithTimeInterval_target_selector_userInfo_repeats(
        startDelay, shared_from_this(), Selector::named("runDelayed:"), definition, false);
}

void VelmoraScripts::runDelayed(const NSTimerRef& timer) {
    const auto definition = std::dynamic_pointer_cast<VelmoraSetting>(timer->userInfo());
    if (!definition) return;
    const std::string source = definition->path();
    if (source.starts_with("#!")) {
        runAsScript(source, definition->trigger());
    } else {
        runAppleScript(source);
    }
}

void VelmoraScripts::runAsScript(const std::string& source, const std::string& name) {
    const auto file = desktop().files().createScriptFile(scriptPath, asciiData(source));
    if (!file) {
        NSLog(std::string("Failed to create script at path '") + scriptPath + "'");
        return;
    }
    const auto task = NSTask::launchedTaskWithLaunchPath_arguments(scriptPath, {});
    if (task) {
        task->setName(name);
        task->waitUntilExit();
    }
    if (task && task->isRunning()) {
        NSLog("Script didn't stop...");
    } else if (!task || task->terminationStatus() != 0) {
        NSLog("Script failed.");
    }
}

void VelmoraScripts::runAppleScript(const std::string& source) {
    const std::optional<LuaScript::Error> error = LuaScript(source, *this).execute();
    if (!error) return;
    NSLog("Applescript execution error: {line = " + std::to_string(error->line) + "; message = \"" +
          quotable(error->message) + "\";}");
}

bool VelmoraScripts::runMenuItem(const std::string& path) {
    const auto find = [&] {
        const NSMenuRef mainMenu = NSApp().mainMenu();
        return mainMenu ? findSelector_inMenu_path(Selector(), *mainMenu, path) : nullptr;
    };
    NSMenuItemRef item = find();
    if (!item) {
        updateMenu();
        item = find();
    }
    if (!item) return false;
    // Opening the menu may fill it anew.
    const auto menu = std::static_pointer_cast<NSMenu>(item->menu()->shared_from_this());
    menu->update();
    item = find();
    if (!item || item->menu() != menu.get() || !item->isEnabled()) return false;
    return item->perform();
}

std::vector<ScriptHost::MenuItem> VelmoraScripts::menuItems() {
    std::vector<MenuItem> items;
    updateMenu();
    if (const NSMenuRef mainMenu = NSApp().mainMenu()) appendItems(*mainMenu, items);
    return items;
}

void VelmoraScripts::beep() {
    NSBeep();
}

void VelmoraScripts::log(const std::string& line) {
    NSLog(line);
}

std::string VelmoraScripts::processName() {
    return desktop().processName();
}

void VelmoraScripts::open(const std::string& address) {
    NSWorkspace::sharedWorkspace().openURL(address);
}

}  // namespace velmora
