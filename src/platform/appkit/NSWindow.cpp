#include "platform/appkit/NSWindow.h"

#include "platform/appkit/NSView.h"
#include "platform/runtime/Class.h"

namespace velmora {

Class& NSView::classObject() {
    static auto* object = new Class("NSView", &NSObject::classObject());
    return *object;
}

Class& NSDrawer::classObject() {
    static auto* object = new Class("NSDrawer", &NSObject::classObject());
    return *object;
}

Class& NSWindow::classObject() {
    static auto* object = new Class("NSWindow", &NSObject::classObject());
    return *object;
}

NSPoint NSWindow::convertScreenToBase(NSPoint point) {
    const NSPoint origin = frame().origin;
    return {point.x - origin.x, point.y - origin.y};
}

}  // namespace velmora
