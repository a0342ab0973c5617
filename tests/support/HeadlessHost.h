#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/headless/HeadlessSession.h"

namespace velmora {

/// Menus in short, for HeadlessHost and HostDescription.
ItemDescription item(std::string title, std::string action = {});
ItemDescription itemWithKey(std::string title, std::string action, std::string key,
                            std::uint32_t modifiers);
ItemDescription disabled(ItemDescription item);
ItemDescription separator();
ItemDescription submenu(std::string title, std::vector<ItemDescription> items);
/// A submenu whose delegate fills it when it is asked to.
ItemDescription lazySubmenu(std::string title, std::vector<ItemDescription> items);

/// A host process for one test, on a headless desktop of its own, current while it lives. What the
/// user is to do is queued (press, moveBy, pause …) and played by run(); without it nothing happens
/// and no time passes.
class HeadlessHost {
public:
    /// Without a menu bar and without windows.
    explicit HeadlessHost(const std::string& processName = "Editor");
    explicit HeadlessHost(const HostDescription& host);

    HeadlessSession& session() { return session_; }
    HeadlessDesktop& desktop() { return process_.desktop(); }
    HeadlessFiles& files() { return session_.files(); }

    // The host

    void menu(std::vector<ItemDescription> menuBar) { desktop().setMenuBar(std::move(menuBar)); }
    /// The item of that path ("File/Close"), or null.
    NSMenuItemRef itemAt(const std::string& path);
    void window(const WindowDescription& window) { desktop().addWindow(window); }

    /// Runs the load hooks, finishes launching and becomes active.
    void launch() { process_.launch(); }
    void activate() { session_.activate(process_); }
    void resign() { session_.resignActive(); }

    // Files of the settings directory, by their names

    std::string settingsFile(const std::string& name) const { return session_.settingsFile(name); }
    void writeSettings(const std::string& name, const std::string& contents);
    std::optional<std::string> readSettings(const std::string& name);

    // What the user does, one after the other

    void hold(std::uint32_t flag);
    void letGo(std::uint32_t flag);
    void press(int button);
    void release(int button);
    void moveTo(float x, float y, int milliseconds = 0);
    void moveBy(float dx, float dy, int milliseconds = 0);
    /// Draws the letters, each 60 points long in 100 ms.
    void stroke(const std::string& letters);
    void type(const std::string& key);
    void pause(int milliseconds);
    /// Runs this at that place of the queue; it may well be inside a loop of the host.
    void then(std::function<void()> action) { session_.input().then(std::move(action)); }

    /// The host's main loop, until all that is done and handled.
    void run() { process_.run(); }
    void advance(int milliseconds);

    // What came of it since the beginning

    std::vector<std::string> commands() const { return texts(Transcript::Kind::command); }
    /// Presses, releases, keys and scrolling that reached the host.
    std::vector<std::string> events() const { return texts(Transcript::Kind::event); }
    std::vector<std::string> motion() const { return texts(Transcript::Kind::motion); }
    std::vector<std::string> log() const { return texts(Transcript::Kind::log); }
    std::vector<std::string> trace() const { return texts(Transcript::Kind::trace); }
    std::vector<std::string> opened() const { return texts(Transcript::Kind::opened); }
    std::vector<std::string> madeKey() const { return texts(Transcript::Kind::madeKey); }
    int beeps() const { return static_cast<int>(texts(Transcript::Kind::beep).size()); }

private:
    std::vector<std::string> texts(Transcript::Kind kind) const;

    HeadlessSession session_;
    HeadlessProcess& process_;
    HeadlessProcess::Scope scope_;
};

}  // namespace velmora
