#include "platform/appkit/controls/NSControl.h"

#include "platform/appkit/NSApplication.h"
#include "platform/appkit/controls/NSContentView.h"
#include "platform/runtime/Class.h"

namespace velmora {

namespace {

[[maybe_unused]] const Class& registered = NSControl::classObject();

}  // namespace

Class& NSControl::classObject() {
    static auto* object = &(new Class("NSControl", &NSView::classObject()))->makes<NSControl>();
    return *object;
}

NSControl::NSControl(NSCellRef cell) : cell_(std::move(cell)) {
    cell_->setControlView(this);
}

NSControl::~NSControl() {
    if (cell_->controlView() == this) cell_->setControlView(nullptr);
}

void NSControl::setCell(const NSCellRef& cell) {
    if (!cell) return;
    if (cell_->controlView() == this) cell_->setControlView(nullptr);
    cell_ = cell;
    cell_->setControlView(this);
    setNeedsDisplay();
}

Id NSControl::target() const {
    const auto* cell = dynamic_cast<const NSActionCell*>(cell_.get());
    return cell ? cell->target() : nullptr;
}

void NSControl::setTarget(const Id& target) {
    if (auto* cell = dynamic_cast<NSActionCell*>(cell_.get())) cell->setTarget(target);
}

Selector NSControl::action() const {
    const auto* cell = dynamic_cast<const NSActionCell*>(cell_.get());
    return cell ? cell->action() : Selector();
}

void NSControl::setAction(Selector action) {
    if (auto* cell = dynamic_cast<NSActionCell*>(cell_.get())) cell->setAction(action);
}

bool NSControl::sendAction_to(Selector action, const Id& target) {
    return action && NSApp().sendAction_to_from(action, target, shared_from_this());
}

void NSControl::performClick(const Id& /*sender*/) {
    if (isEnabled()) sendAction();
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
