#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/port/Bitmap.h"
#include "platform/port/CGDirectDisplay.h"
#include "platform/port/FileSystem.h"
#include "platform/port/NSGeometry.h"
#include "platform/port/Time.h"
#include "platform/runtime/NSLog.h"

namespace velmora {

class NSCursor;
class NSDrawnWindow;
class NSEvent;
class NSMenu;
class NSPanel;
class NSTask;
class NSWindow;
class DrawnWindowPeer;
class PanelPeer;

/// What the layer needs from a desktop, and nothing more. There is one for each host process, made
/// by whatever brings the system into the host; everything is called on the host's main thread, and
/// nothing may throw. Coordinates are screen coordinates as in NSGeometry.h.
///
/// The other way round a desktop drives the layer through NSApplication: postEvent and
/// deliverEvents for input, finishLaunching, didBecomeActive and willResignActive for the
/// application's state, fireTimers when the moment that timersChanged named has come.
class Desktop : public LogReceiver {
public:
    virtual ~Desktop() = default;

    // Time and waiting

    virtual Time now() const = 0;

    /// Lets the host go on until the deadline, or until an event was posted to NSApplication,
    /// whichever comes first; may return earlier. Input that comes meanwhile is posted and kept
    /// from the host; what is no input goes to the host at once.
    virtual void wait(Time deadline) = 0;

    /// The host's own loop is to call NSApplication::fireTimers at that moment, or never. Replaces
    /// what was asked for before.
    virtual void timersChanged(std::optional<Time> earliest) = 0;

    // The host

    /// The host's own dispatch of an event: what the host would have done with it without us. An
    /// event that was kept from the host while it waited is delivered later, in the order of these
    /// calls.
    virtual void dispatchEvent(const std::shared_ptr<NSEvent>& event) = 0;

    /// Runs a command of one of our own menus: at once, or soon, with the same current event, where
    /// the host is still in the middle of an event and the command may run a loop.
    virtual void runCommand(const std::function<void()>& command) { command(); }

    /// The menu bar of the window that is key or was last, as it stands now; null without one. The
    /// same menus and items are the same objects from call to call.
    virtual std::shared_ptr<NSMenu> mainMenu() = 0;

    /// The application's visible windows, our panels among them, front to back; menus and the like
    /// are none.
    virtual std::vector<std::shared_ptr<NSWindow>> orderedWindows() = 0;

    /// The window that takes the keys, or that has been made to; null when the application is not
    /// active.
    virtual std::shared_ptr<NSWindow> keyWindow() = 0;

    /// The host's window that takes the keys, or would if the application were active and no panel
    /// of ours had them; null without one.
    virtual std::shared_ptr<NSWindow> mainWindow() = 0;

    /// A window for the panel, which owns it; not yet shown.
    virtual std::unique_ptr<PanelPeer> makePanel(NSPanel& panel) = 0;

    /// A window that only shows what is drawn, owned by `window`; not yet shown.
    virtual std::unique_ptr<DrawnWindowPeer> makeDrawnWindow(NSDrawnWindow& window) = 0;

    // The pointer

    virtual NSPoint mouseLocation() = 0;

    /// As CGGetLastMouseDelta.
    virtual CGMouseDelta lastMouseDelta() = 0;

    /// Until it is called with true again, the mouse does not move the pointer; motion is told by
    /// events and lastMouseDelta all the same.
    virtual void associateMouseAndPointer(bool connected) = 0;

    /// Shows the cursor everywhere in the application; null gives back the host's own.
    virtual void showCursor(const NSCursor* cursor) = 0;

    // Pictures

    /// Decodes a picture file's bytes; nothing when they are none.
    virtual std::optional<Bitmap> decodeImage(std::string_view bytes) = 0;

    // The world around

    /// Opens the address with the user's default handler.
    virtual void openURL(const std::string& address) = 0;

    /// What the web address answers. Blocks until it is there, for ten seconds at the most. Nothing
    /// when it cannot be had whole or is longer than so many bytes.
    virtual std::optional<std::string> fetch(const std::string& address, std::size_t mostBytes) = 0;

    /// Starts the file as a process, whose file and interpreter must exist; null when that fails.
    virtual std::unique_ptr<NSTask> launchProcess(const std::string& path,
                                                  const std::vector<std::string>& arguments) = 0;

    // How it tells something. None of these blocks or throws: what cannot be told at once is lost.

    void log(const std::string& line) override = 0;
    void trace(const std::string& line) override = 0;
    /// The system's alert sound. It is no line of the log.
    virtual void beep() = 0;
    bool traceEnabled() const override = 0;

    /// The base name of the running executable, or of the script for an interpreter.
    virtual std::string processName() = 0;
    virtual std::string homeDirectory() = 0;

    /// A variable of the process's environment.
    virtual std::optional<std::string> environment(const std::string& name) = 0;

    /// Where the plug-in's resources lie.
    virtual std::string resourceDirectory() = 0;

    /// The user's languages, most wanted first, such as "de_DE" or "en".
    virtual std::vector<std::string> preferredLanguages() = 0;
    virtual FileSystem& files() = 0;
};

/// The desktop of this process. It must have been set.
Desktop& desktop();

/// As desktop(), but null before it was set.
Desktop* currentDesktop();

/// Sets the desktop of this process; its owner keeps it for as long as the process runs.
void setDesktop(Desktop* desktop);

}  // namespace velmora
