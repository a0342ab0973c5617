#include "platform/appkit/NSDrawnWindow.h"

#include "platform/port/Desktop.h"
#include "platform/runtime/Class.h"

namespace velmora {

namespace {

constexpr int normalLevel = 0;
constexpr int statusLevel = 25;

}  // namespace

int CGWindowLevelForKey(int key) {
    return key == kCGStatusWindowLevelKey ? statusLevel : normalLevel;
}

Class& NSDrawnView::classObject() {
    static auto* object = new Class("NSDrawnView", &NSView::classObject());
    return *object;
}

void NSDrawnView::display() {
    if (window_) window_->display();
}

NSRect NSDrawnView::frame() {
    return window_ ? NSRect{{}, window_->frame().size} : NSRect();
}

std::shared_ptr<NSWindow> NSDrawnView::window() {
    return window_ ? std::static_pointer_cast<NSWindow>(window_->shared_from_this()) : nullptr;
}

Class& NSDrawnWindow::classObject() {
    static auto* object = new Class("NSDrawnWindow", &NSWindow::classObject());
    return *object;
}

NSDrawnWindow::~NSDrawnWindow() {
    if (view_) view_->window_ = nullptr;
}

DrawnWindowPeer& NSDrawnWindow::peer() {
    if (!peer_) peer_ = desktop().makeDrawnWindow(*this);
    return *peer_;
}

void NSDrawnWindow::setContentView(NSDrawnViewRef view) {
    if (view_) view_->window_ = nullptr;
    view_ = std::move(view);
    if (view_) view_->window_ = this;
}

void NSDrawnWindow::setFrame_display(NSRect frame, bool display) {
    frame_ = frame;
    peer().setFrame(frame);
    if (display) this->display();
}

void NSDrawnWindow::setAlphaValue(float alpha) {
    if (alpha == alpha_) return;
    alpha_ = alpha;
    peer().setAlphaValue(alpha);
}

void NSDrawnWindow::orderFront() {
    peer().orderFront();
}

void NSDrawnWindow::orderOut() {
    peer().orderOut();
}

void NSDrawnWindow::display() {
    if (!view_) return;
    peer().show(NSGraphicsContext::record([this] { view_->drawRect(view_->frame()); }));
}

}  // namespace velmora
