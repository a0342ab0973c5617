#pragma once

#include <string>

#include "commands/VelmoraTextSnippets.h"
#include "platform/foundation/scripts/ScriptHost.h"

namespace velmora {

/// Named scripts, listed and chosen like text snippets. In a definition the trigger is the name,
/// the path the source: an executable one that begins with "#!", else one that runs in the process.
class VelmoraScripts final : public VelmoraTextSnippets, private ScriptHost {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    std::string componentName() override { return "Scripts"; }
    Class* uiClass() override;

    /// Runs the script a moment later, when the menu has closed.
    void runWithSetting(const VelmoraSettingRef& definition) override;
    void runDelayed(const NSTimerRef& timer);

    /// Writes the source to a file, runs that as a process and waits for its end. Characters beyond
    /// ASCII are written as question marks. Messages about it say the name.
    void runAsScript(const std::string& source, const std::string& name = {});

    /// Runs the source in the process, as Lua.
    void runAppleScript(const std::string& source);

private:
    bool runMenuItem(const std::string& path) override;
    std::vector<MenuItem> menuItems() override;
    void type(const std::string& text) override { VelmoraTextSnippets::type(text); }
    void beep() override;
    void log(const std::string& line) override;
    std::string processName() override;
    void open(const std::string& address) override;
};

}  // namespace velmora
