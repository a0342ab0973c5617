#pragma once

#include <QObject>
#include <QTimer>
#include <memory>

#include "platform/foundation/files/PosixFileSystem.h"
#include "platform/port/Desktop.h"
#include "platform/qt/base/LogFile.h"
#include "platform/qt/base/QtCursor.h"
#include "platform/qt/input/EventHook.h"
#include "platform/qt/input/QtPinnedPointer.h"
#include "platform/qt/input/QtTyping.h"
#include "platform/qt/input/QtWheel.h"
#include "platform/qt/menus/QtContextMenus.h"
#include "platform/qt/menus/QtMenuBars.h"
#include "platform/qt/windows/QtWindows.h"

namespace velmora {

/// The desktop of a real application: its windows, its menus, its events.
class QtDesktop final : public Desktop {
public:
    /// Makes it the desktop of this process, runs the load hooks, and begins: the host has finished
    /// launching when the first window with a menu bar is up, or one without a bar has been for a
    /// moment; nothing happens before.
    QtDesktop();

    /// The host's loop has ended, or is about to: it will save what it has to save.
    void hostWillQuit();

    /// The application object is about to go, and with it everything that hangs on it. What is
    /// asked from here on gets the answers of a host without windows.
    void close();

    /// The process ends. As close, but nothing of the toolkit is touched any more: what hangs on
    /// the application object is left to the process.
    void leave();

    Time now() const override;
    void wait(Time deadline) override;
    void timersChanged(std::optional<Time> earliest) override;
    void dispatchEvent(const NSEventRef& event) override;
    void runCommand(const std::function<void()>& command) override;
    std::shared_ptr<NSMenu> mainMenu() override;
    std::vector<std::shared_ptr<NSWindow>> orderedWindows() override;
    std::shared_ptr<NSWindow> keyWindow() override;
    std::shared_ptr<NSWindow> mainWindow() override;
    std::unique_ptr<PanelPeer> makePanel(NSPanel& panel) override;
    std::unique_ptr<DrawnWindowPeer> makeDrawnWindow(NSDrawnWindow& window) override;
    NSPoint mouseLocation() override;
    CGMouseDelta lastMouseDelta() override;
    void associateMouseAndPointer(bool connected) override;
    void showCursor(const NSCursor* cursor) override;
    std::optional<Bitmap> decodeImage(std::string_view bytes) override;
    void openURL(const std::string& address) override;
    void beep() override;
    std::optional<std::string> fetch(const std::string& address, std::size_t mostBytes) override;
    std::unique_ptr<NSTask> launchProcess(const std::string& path,
                                          const std::vector<std::string>& arguments) override;
    void log(const std::string& line) override;
    void trace(const std::string& line) override;
    bool traceEnabled() const override { return traces_; }
    std::string processName() override { return processName_; }
    std::string homeDirectory() override;
    std::optional<std::string> environment(const std::string& name) override;
    std::string resourceDirectory() override;
    std::vector<std::string> preferredLanguages() override;
    FileSystem& files() override { return files_; }

private:
    /// What lives no longer than the application object.
    struct Session {
        Session();

        QObject context;
        QtContextMenus contextMenus;
        QtWindows windows;
        QtMenuBars menuBars;
        QtTyping typing;
        QtCursor cursor;
        QtPinnedPointer pointer;
        QtWheel wheel;
        EventHook hook;
        QTimer launch;
        /// How much longer a menu bar may come.
        QTimer patience;
        QTimer timers;
        bool active = false;
    };

    void tryToLaunch();
    void launch();
    void applicationStateChanged();
    void fireTimers();

    std::string processName_;
    LogFile log_;
    bool traces_;
    PosixFileSystem files_;
    std::unique_ptr<Session> session_;
};

}  // namespace velmora
