#pragma once

#include <string>
#include <vector>

namespace velmora {

/// What a script can do with the application in which it runs.
class ScriptHost {
public:
    virtual ~ScriptHost() = default;

    struct MenuItem {
        std::string path;
        std::string title;
        /// As it is shown; "" without a key equivalent.
        std::string keyEquivalent;
        bool enabled = false;
    };

    /// Runs the command of the menu bar with that path; false when there is none or it is disabled.
    virtual bool runMenuItem(const std::string& path) = 0;

    /// The commands of the menu bar in their order, without separators and submenus.
    virtual std::vector<MenuItem> menuItems() = 0;

    /// Types the text into the view that has the keyboard.
    virtual void type(const std::string& text) = 0;

    virtual void beep() = 0;
    virtual void log(const std::string& line) = 0;
    virtual std::string processName() = 0;

    /// Opens the address with the user's default handler.
    virtual void open(const std::string& address) = 0;
};

}  // namespace velmora
