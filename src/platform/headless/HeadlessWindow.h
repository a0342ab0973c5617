#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/appkit/NSView.h"
#include "platform/appkit/NSWindow.h"
#include "platform/headless/HeadlessMenu.h"
#include "platform/headless/HostDescription.h"

namespace velmora {

class HeadlessTextView;

/// A view of a host's window.
class HeadlessView : public NSView {
public:
    HeadlessView(const ViewDescription& description, const std::weak_ptr<NSWindow>& window,
                 const CommandHandler& handler);

    /// Appends the text views among the view and those in it.
    void findTextViews(std::vector<HeadlessTextView*>& found);

    NSViewRef hitTest(NSPoint point) override;
    NSMenuRef menuForEvent(const NSEventRef& event) override;
    NSWindowRef window() override { return window_.lock(); }

private:
    NSRect frame_;
    std::optional<ContextMenuDescription> contextMenu_;
    std::vector<std::shared_ptr<HeadlessView>> views_;
    std::weak_ptr<NSWindow> window_;
    CommandHandler handler_;
};

/// A host's window, or the window that holds a drawer.
class HeadlessWindow final : public NSWindow {
public:
    /// `number` is the window's; its drawers take the numbers after it. `makeKey` is called when
    /// somebody makes it key.
    static std::shared_ptr<HeadlessWindow> make(const WindowDescription& description, int number,
                                                const CommandHandler& handler,
                                                std::function<void(HeadlessWindow&)> makeKey);

    HeadlessWindow(std::string title, NSRect frame, int number)
        : title_(std::move(title)), frame_(frame), number_(number) {}

    const std::string& title() const { return title_; }
    NSRect frame() override { return frame_; }
    NSViewRef contentView() override { return contentView_; }
    std::vector<std::shared_ptr<NSDrawer>> drawers() override { return drawers_; }
    int windowNumber() override { return number_; }
    void makeKeyWindow() override;

    HeadlessTextView* textViewNamed(const std::string& name) const;
    /// The one that has the keys when the window is key, or null.
    HeadlessTextView* focusedTextView() const { return focused_; }
    void focusTextView(const std::string& name) { focused_ = textViewNamed(name); }

private:
    std::string title_;
    NSRect frame_;
    int number_;
    NSViewRef contentView_;
    std::vector<std::shared_ptr<NSDrawer>> drawers_;
    std::function<void(HeadlessWindow&)> makeKey_;
    std::vector<HeadlessTextView*> textViews_;
    HeadlessTextView* focused_ = nullptr;
};

}  // namespace velmora
