#include "commands/VelmoraScripts.h"

#include <string_view>

#include "platform/foundation/Characters.h"
#include "platform/foundation/LuaScript.h"
#include "platform/foundation/NSLog.h"
#include "platform/foundation/NSTask.h"
#include "platform/foundation/ScriptFile.h"
#include "platform/runtime/Class.h"

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

}  // namespace

Class& VelmoraScripts::classObject() {
    static auto* object = &(new Class("VelmoraScripts", &VelmoraTextSnippets::classObject()))
                               ->method<&VelmoraScripts::runDelayed>("runDelayed:");
    return *object;
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
        runAsScript(source);
    } else {
        runAppleScript(source);
    }
}

void VelmoraScripts::runAsScript(const std::string& source) {
    const auto file = ScriptFile::create(scriptPath, asciiData(source));
    if (!file) {
        NSLog(std::string("Failed to create script at path '") + scriptPath + "'");
        return;
    }
    const auto task = NSTask::launchedTaskWithLaunchPath_arguments(file->path(), {});
    if (task) task->waitUntilExit();
    if (task && task->isRunning()) {
        NSLog("Script didn't stop...");
    } else if (!task || task->terminationStatus() != 0) {
        NSLog("Script failed.");
    }
}

void VelmoraScripts::runAppleScript(const std::string& source) {
    const std::optional<LuaScript::Error> error = LuaScript(source).execute();
    if (!error) return;
    NSLog("Applescript execution error: {line = " + std::to_string(error->line) +
          "; message = \"" + error->message + "\"}");
}

}  // namespace velmora
