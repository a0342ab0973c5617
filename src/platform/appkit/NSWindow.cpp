#include "platform/appkit/NSWindow.h"

#include "platform/appkit/NSView.h"
#include "platform/runtime/Class.h"

namespace velmora {

Class& NSView::classObject() {
    static auto* object = new Class("NSView", &NSResponder::classObject());
    return *object;
}

Class& NSDrawer::classObject() {
    static auto* object = new Class("NSDrawer", &NSObject::classObject());
    return *object;
}

Class& NSWindow::classObject() {
    static auto* object = new Class("NSWindow", &NSResponder::classObject());
    return *object;
}

NSResponderRef NSView::nextResponder() {
    if (NSViewRef above = superview()) return above;
    return window();
}

bool NSWindow::makeFirstResponder(const NSResponderRef& /*responder*/) {
    return false;
}

NSPoint NSWindow::convertScreenToBase(NSPoint point) {
    const NSPoint origin = frame().origin;
    return {point.x - origin.x, point.y - origin.y};
}

}  // namespace velmora
