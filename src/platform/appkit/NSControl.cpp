#include "platform/appkit/NSControl.h"

#include "platform/appkit/NSApplication.h"
#include "platform/appkit/NSContentView.h"
#include "platform/runtime/Class.h"

namespace velmora {

Class& NSControl::classObject() {
    static auto* object = new Class("NSControl", &NSView::classObject());
    return *object;
}

void NSControl::setEnabled(bool enabled) {
    cell_->setEnabled(enabled);
    setNeedsDisplay();
}

bool NSControl::sendAction_to(Selector action, const Id& target) {
    return action && NSApp().sendAction_to_from(action, target, shared_from_this());
}

void NSControl::performClick(const Id& /*sender*/) {
    if (isEnabled()) sendAction_to(action(), target());
}

void NSControl::drawRect(NSRect /*rect*/) {
    if (peer_) peer_->draw();
}

void NSControl::removeFromSuperviewWithoutNeedingDisplay() {
    if (superview_) superview_->remove(*this);
}

std::shared_ptr<NSWindow> NSControl::window() {
    return superview_ ? superview_->window() : nullptr;
}

NSViewRef NSControl::superview() {
    if (!superview_) return nullptr;
    return std::static_pointer_cast<NSView>(superview_->shared_from_this());
}

void NSControl::setNeedsDisplay() {
    if (peer_) peer_->needsDisplay();
}

}  // namespace velmora
