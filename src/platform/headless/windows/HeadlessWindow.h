#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/appkit/NSWindow.h"
#include "platform/headless/windows/HeadlessView.h"

namespace velmora {

class HeadlessScrollView;
class HeadlessTextView;

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
    NSResponderRef firstResponder() override;
    bool makeFirstResponder(const NSResponderRef& responder) override;

    HeadlessScrollView* scrollViewNamed(const std::string& name) const;
    HeadlessTextView* textViewNamed(const std::string& name) const;
    /// The one that has the keys when the window is key, or null.
    HeadlessTextView* focusedTextView() const;
    void focusTextView(const std::string& name);

private:
    std::string title_;
    NSRect frame_;
    int number_;
    NSViewRef contentView_;
    std::vector<std::shared_ptr<NSDrawer>> drawers_;
    std::function<void(HeadlessWindow&)> makeKey_;
    /// What a scenario speaks of by its name.
    std::vector<NSView*> named_;
    std::weak_ptr<NSObject> firstResponder_;
};

}  // namespace velmora
