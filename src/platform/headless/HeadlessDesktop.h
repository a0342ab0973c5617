#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/headless/HeadlessDrawnWindow.h"
#include "platform/headless/HeadlessPanel.h"
#include "platform/headless/HeadlessTask.h"
#include "platform/headless/Transcript.h"
#include "platform/headless/windows/HeadlessMenu.h"
#include "platform/headless/windows/HeadlessWindow.h"
#include "platform/headless/windows/HostDescription.h"
#include "platform/port/Desktop.h"

namespace velmora {

class HeadlessSession;

/// The desktop of one host process of a session: the host's menus and windows as described, and a
/// record of what reached the host.
class HeadlessDesktop final : public Desktop {
public:
    static constexpr NSRect mainScreen{{0, 0}, {1280, 800}};

    /// The session must outlive it. The process must be current: its menus post notifications.
    HeadlessDesktop(HeadlessSession& session, const HostDescription& host);

    // The port

    Time now() const override;
    void wait(Time deadline) override;
    /// The session looks at the run loop itself when it leaves the process.
    void timersChanged(std::optional<Time> /*earliest*/) override {}
    void dispatchEvent(const std::shared_ptr<NSEvent>& event) override;
    NSMenuRef mainMenu() override { return menuBar_; }
    std::vector<NSWindowRef> orderedWindows() override;
    NSWindowRef keyWindow() override;
    NSWindowRef mainWindow() override { return keyWindow_.lock(); }
    std::unique_ptr<PanelPeer> makePanel(NSPanel& panel) override;
    std::unique_ptr<DrawnWindowPeer> makeDrawnWindow(NSDrawnWindow& window) override;
    NSPoint mouseLocation() override;
    CGMouseDelta lastMouseDelta() override;
    void associateMouseAndPointer(bool connected) override;
    void showCursor(const NSCursor* cursor) override;
    std::optional<Bitmap> decodeImage(std::string_view bytes) override;
    void openURL(const std::string& address) override;
    void beep() override;
    /// Starts nothing: records what the script file holds. What would not run does not start.
    /// Nothing is reachable.
    std::optional<std::string> fetch(const std::string& /*address*/,
                                     std::size_t /*mostBytes*/) override {
        return {};
    }
    std::unique_ptr<NSTask> launchProcess(const std::string& path,
                                          const std::vector<std::string>& arguments) override;
    void log(const std::string& line) override;
    void trace(const std::string& line) override;
    bool traceEnabled() const override { return traceEnabled_; }
    std::string processName() override { return processName_; }
    std::string homeDirectory() override;
    /// Only VELMORA_LUA_LIMIT is set.
    std::optional<std::string> environment(const std::string& name) override;
    std::string resourceDirectory() override;
    std::vector<std::string> preferredLanguages() override { return languages_; }
    FileSystem& files() override;

    // The host, for whoever plays it

    const std::shared_ptr<HeadlessMenu>& menuBar() const { return menuBar_; }
    /// Takes the place of the menu bar; null leaves the host without one.
    void setMenuBar(const std::optional<std::vector<ItemDescription>>& items);
    /// What the host does when its commands run.
    const CommandHandler& commandHandler() const { return commandHandler_; }
    /// Called after a command was recorded.
    void setOnCommand(CommandHandler onCommand) { onCommand_ = std::move(onCommand); }

    void addWindow(const WindowDescription& description);
    /// The window with that title, or null.
    std::shared_ptr<HeadlessWindow> windowTitled(const std::string& title) const;
    /// Makes it key as a click into it does: it comes to the front, and nothing is recorded.
    void focusWindow(const std::shared_ptr<HeadlessWindow>& window);
    /// Takes it off the screen. When it was key, the next one is.
    void closeWindow(const HeadlessWindow& window);

    /// The text view of that name in one of the windows, or null.
    HeadlessTextView* textViewNamed(const std::string& name) const;
    /// Gives it the keys, as a click into it does. False without one of that name.
    bool focusTextView(const std::string& name);

    /// The scroll view of that name in one of the windows, or null.
    HeadlessScrollView* scrollViewNamed(const std::string& name) const;

    /// The panel of ours that a person has before them, or null: the modal one, else the foremost.
    HeadlessPanel* frontPanel() const;
    /// The user clicks into the panel: it comes to the front, and is key.
    void focusPanel(HeadlessPanel& panel) { showPanel(panel); }
    /// Closes the modal panel by its title bar's button. False without one.
    bool closeModalPanel();

    /// The window of ours that is only drawn and was shown last, or null.
    HeadlessDrawnWindow* drawnWindow() const {
        return drawnWindows_.empty() ? nullptr : drawnWindows_.back();
    }

    /// The windows of ours that are only drawn and visible, the frontmost last.
    const std::vector<HeadlessDrawnWindow*>& drawnWindows() const { return drawnWindows_; }

    /// What becomes of the processes that are started from here on.
    void setProcessEnd(const ProcessEnd& end) { processEnd_ = end; }

    bool isActive() const { return active_; }
    void setActive(bool active) { active_ = active; }
    bool showsCursor() const { return showsCursor_; }
    /// The cursor that is shown in place of the host's own, or null.
    std::shared_ptr<const NSCursor> shownCursor() const { return cursor_.lock(); }
    void setTraceEnabled(bool enabled) { traceEnabled_ = enabled; }

    void record(Transcript::Kind kind, std::string text);

    // For the panels and drawn windows

    int takeWindowNumber() { return nextWindowNumber_++; }
    void showPanel(HeadlessPanel& panel);
    void makeKey(HeadlessPanel& panel);
    void removePanel(HeadlessPanel& panel);
    void showDrawnWindow(HeadlessDrawnWindow& window);
    void removeDrawnWindow(HeadlessDrawnWindow& window) { std::erase(drawnWindows_, &window); }
    /// Between the two, nothing else takes input but what becomes modal meanwhile.
    void beginModal(HeadlessPanel& panel) { modal_.push_back(&panel); }
    void endModal(HeadlessPanel& panel);

private:
    /// The modal panel, while it shows.
    HeadlessPanel* modalPanel() const;
    /// The panel of ours that takes the keys, or null.
    HeadlessPanel* panelForKeys() const;
    void commandRan(NSMenuItem& item);
    bool runKeyEquivalent(const NSEvent& event);
    bool givenToPanel(const NSEventRef& event);
    void becomeKey(HeadlessWindow& window);
    /// As keyWindow, whether or not the host is active.
    NSWindowRef windowForKeys() const;

    HeadlessSession& session_;
    std::string processName_;
    std::vector<std::string> languages_;
    CommandHandler commandHandler_;
    CommandHandler onCommand_;
    std::shared_ptr<HeadlessMenu> menuBar_;
    std::vector<std::shared_ptr<HeadlessWindow>> windows_;
    /// The host's window that takes the keys, or that did before a panel of ours.
    std::weak_ptr<HeadlessWindow> keyWindow_;
    /// Those that are visible, the frontmost last. They lie above the host's windows.
    std::vector<HeadlessPanel*> panels_;
    /// The one of them that takes the keys, or null.
    HeadlessPanel* keyPanel_ = nullptr;
    std::vector<HeadlessPanel*> modal_;
    std::vector<HeadlessDrawnWindow*> drawnWindows_;
    ProcessEnd processEnd_;
    int nextWindowNumber_ = 1;
    bool active_ = false;
    bool showsCursor_ = false;
    std::weak_ptr<const NSCursor> cursor_;
    bool traceEnabled_ = true;
};

}  // namespace velmora
