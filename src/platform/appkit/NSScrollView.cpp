#include "platform/appkit/NSScrollView.h"

#include "platform/runtime/Class.h"

namespace velmora {

Class& NSClipView::classObject() {
    static auto* object = new Class("NSClipView", &NSResponder::classObject());
    return *object;
}

Class& NSScrollView::classObject() {
    static auto* object = new Class("NSScrollView", &NSView::classObject());
    return *object;
}

}  // namespace velmora
