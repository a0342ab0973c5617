#include "platform/appkit/NSPanel.h"

#include "platform/Desktop.h"
#include "platform/runtime/Class.h"

namespace velmora {

Class& NSPanel::classObject() {
    static auto* object = new Class("NSPanel", &NSWindow::classObject());
    return *object;
}

NSPanel::NSPanel(std::string title, std::vector<Row> rows)
    : title_(std::move(title)), content_(std::make_shared<NSContentView>(*this, std::move(rows))) {}

NSPanel::~NSPanel() {
    content_->close();
}

void NSPanel::contentChanged() {
    if (peer_) peer_->contentChanged();
}

PanelPeer& NSPanel::peer() {
    if (!peer_) peer_ = desktop().makePanel(*this);
    return *peer_;
}

NSRect NSPanel::frame() {
    return peer().frame();
}

void NSPanel::setFrameOrigin(NSPoint origin) {
    peer().setFrameOrigin(origin);
}

void NSPanel::center() {
    peer().center();
}

void NSPanel::makeKeyAndOrderFront() {
    peer().makeKeyAndOrderFront();
}

void NSPanel::orderOut() {
    peer().orderOut();
}

void NSPanel::makeKeyWindow() {
    peer().makeKeyWindow();
}

bool NSPanel::isVisible() {
    return peer().isVisible();
}

}  // namespace velmora
