#include "gestures/VelmoraWindowAdditions.h"

#include "gestures/VelmoraGestureFeedbackWindow.h"
#include "gestures/VelmoraMouseHandling.h"
#include "platform/appkit/NSView.h"
#include "platform/runtime/Class.h"

namespace velmora {

namespace {

const Category category(NSWindow::classObject(),
                        {methodFor<&velmoraCheckForHit>("velmoraCheckForHit")});

}  // namespace

NSWindowRef velmoraCheckForHit(NSWindow& window) {
    if (dynamic_cast<VelmoraGestureFeedbackWindow*>(&window)) return nullptr;
    const NSPoint start = *VelmoraGestureStartPoint;
    if (NSMouseInRect(start, window.frame(), false)) {
        return std::static_pointer_cast<NSWindow>(window.shared_from_this());
    }
    for (const auto& drawer : window.drawers()) {
        const NSViewRef content = drawer->contentView();
        NSWindowRef holder = content ? content->window() : nullptr;
        if (holder && NSMouseInRect(start, holder->frame(), false)) return holder;
    }
    return nullptr;
}

}  // namespace velmora
