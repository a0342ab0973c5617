#pragma once

#include "platform/appkit/NSDrawnWindow.h"
#include "platform/appkit/panels/NSPanel.h"
#include "platform/foundation/scripts/NSTask.h"
#include "platform/port/CGDirectDisplay.h"
#include "platform/port/Desktop.h"

namespace velmora {

/// The desktop of the process while it lives, in place of another one that does the work: for what
/// a test has behave differently.
class ForwardingDesktop : public Desktop {
public:
    explicit ForwardingDesktop(Desktop& inner) : inner_(inner) { setDesktop(this); }
    ~ForwardingDesktop() override { setDesktop(&inner_); }
    ForwardingDesktop(const ForwardingDesktop&) = delete;
    ForwardingDesktop& operator=(const ForwardingDesktop&) = delete;

    std::shared_ptr<NSMenu> mainMenu() override { return inner_.mainMenu(); }
    Time now() const override { return inner_.now(); }
    void wait(Time deadline) override { inner_.wait(deadline); }
    void timersChanged(std::optional<Time> earliest) override { inner_.timersChanged(earliest); }
    void dispatchEvent(const std::shared_ptr<NSEvent>& event) override {
        inner_.dispatchEvent(event);
    }
    std::vector<std::shared_ptr<NSWindow>> orderedWindows() override {
        return inner_.orderedWindows();
    }
    std::shared_ptr<NSWindow> keyWindow() override { return inner_.keyWindow(); }
    std::shared_ptr<NSWindow> mainWindow() override { return inner_.mainWindow(); }
    std::unique_ptr<PanelPeer> makePanel(NSPanel& panel) override {
        return inner_.makePanel(panel);
    }
    std::unique_ptr<DrawnWindowPeer> makeDrawnWindow(NSDrawnWindow& window) override {
        return inner_.makeDrawnWindow(window);
    }
    NSPoint mouseLocation() override { return inner_.mouseLocation(); }
    CGMouseDelta lastMouseDelta() override { return inner_.lastMouseDelta(); }
    void associateMouseAndPointer(bool connected) override {
        inner_.associateMouseAndPointer(connected);
    }
    void showCursor(const NSCursor* cursor) override { inner_.showCursor(cursor); }
    std::optional<Bitmap> decodeImage(std::string_view bytes) override {
        return inner_.decodeImage(bytes);
    }
    void openURL(const std::string& address) override { inner_.openURL(address); }
    void beep() override { inner_.beep(); }
    std::optional<std::string> fetch(const std::string& address, std::size_t mostBytes) override {
        return inner_.fetch(address, mostBytes);
    }
    std::unique_ptr<NSTask> launchProcess(const std::string& path,
                                          const std::vector<std::string>& arguments) override {
        return inner_.launchProcess(path, arguments);
    }
    void log(const std::string& line) override { inner_.log(line); }
    void trace(const std::string& line) override { inner_.trace(line); }
    bool traceEnabled() const override { return inner_.traceEnabled(); }
    std::string processName() override { return inner_.processName(); }
    std::string homeDirectory() override { return inner_.homeDirectory(); }
    std::optional<std::string> environment(const std::string& name) override {
        return inner_.environment(name);
    }
    std::string resourceDirectory() override { return inner_.resourceDirectory(); }
    std::vector<std::string> preferredLanguages() override { return inner_.preferredLanguages(); }
    FileSystem& files() override { return inner_.files(); }

private:
    Desktop& inner_;
};

}  // namespace velmora
