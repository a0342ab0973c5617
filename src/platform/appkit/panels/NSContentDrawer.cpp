#include "platform/appkit/panels/NSContentDrawer.h"

#include "platform/appkit/panels/NSPanel.h"
#include "platform/runtime/Class.h"

namespace velmora {

namespace {

/// What a drawer's window holds, as far as a gesture can see.
class DrawerView final : public NSView {
public:
    explicit DrawerView(std::shared_ptr<NSWindow> window) : window_(std::move(window)) {}
    NSViewRef hitTest(NSPoint /*point*/) override { return nullptr; }
    std::shared_ptr<NSMenu> menuForEvent(const NSEventRef& /*event*/) override { return nullptr; }
    std::shared_ptr<NSWindow> window() override { return window_; }

private:
    std::shared_ptr<NSWindow> window_;
};

}  // namespace

/// The part of the panel's window on the screen that is the drawer.
class NSContentDrawer::Window final : public NSWindow {
public:
    explicit Window(NSPanel& panel) : panel_(&panel) {}
    void leavePanel() { panel_ = nullptr; }

    NSRect frame() override { return panel_ ? panel_->peer().drawerFrame() : NSRect(); }
    NSViewRef contentView() override {
        return std::make_shared<DrawerView>(std::static_pointer_cast<NSWindow>(shared_from_this()));
    }
    std::vector<std::shared_ptr<NSDrawer>> drawers() override { return {}; }
    int windowNumber() override { return panel_ ? panel_->windowNumber() : 0; }
    void makeKeyWindow() override {
        if (panel_) panel_->makeKeyWindow();
    }

private:
    /// Owns the drawer, which takes it back when it goes.
    NSPanel* panel_;
};

Class& NSContentDrawer::classObject() {
    static auto* object = &(new Class("NSContentDrawer", &NSDrawer::classObject()))
                               ->method<&NSContentDrawer::open>("open:")
                               .method<&NSContentDrawer::close>("close:")
                               .method<&NSContentDrawer::toggle>("toggle:");
    return *object;
}

NSContentDrawer::NSContentDrawer(NSControlRef content) : content_(std::move(content)) {}

void NSContentDrawer::setPanel(NSPanel* panel) {
    if (window_) window_->leavePanel();
    panel_ = panel;
    window_ = panel ? std::make_shared<Window>(*panel) : nullptr;
}

NSViewRef NSContentDrawer::contentView() {
    return window_ ? window_->contentView() : nullptr;
}

void NSContentDrawer::open(const Id& /*sender*/) {
    setOpen(true);
}

void NSContentDrawer::close(const Id& /*sender*/) {
    setOpen(false);
}

void NSContentDrawer::toggle(const Id& /*sender*/) {
    setOpen(!open_);
}

void NSContentDrawer::setOpen(bool open) {
    if (open == open_) return;
    open_ = open;
    if (panel_) panel_->drawerChanged();
}

}  // namespace velmora
