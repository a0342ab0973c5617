#pragma once

#include <memory>

#include "platform/appkit/NSEvent.h"
#include "platform/appkit/NSResponder.h"
#include "platform/port/NSGeometry.h"

namespace velmora {

class NSMenu;
class NSWindow;

/// A view of a window: here, what the system asks of any. Desktops derive from it for the host's.
class NSView : public NSResponder {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    /// The deepest view at the point (of the window's base coordinates), or null outside.
    virtual std::shared_ptr<NSView> hitTest(NSPoint point) = 0;

    /// The context menu that the view would open for the event, or null. The host's code runs here
    /// and may throw.
    virtual std::shared_ptr<NSMenu> menuForEvent(const NSEventRef& event) = 0;

    virtual std::shared_ptr<NSWindow> window() = 0;

    /// The view that holds this one, or null for a window's content view.
    virtual std::shared_ptr<NSView> superview() { return nullptr; }

    /// A key that is pressed anywhere in the window, before the view with the keyboard has it. True
    /// when this view, or one in it, has used it.
    virtual bool performKeyEquivalent(const NSEventRef& /*event*/) { return false; }

    /// The superview, or the window at the end.
    NSResponderRef nextResponder() override;
};

using NSViewRef = std::shared_ptr<NSView>;

}  // namespace velmora
