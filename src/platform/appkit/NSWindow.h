#pragma once

#include <memory>
#include <vector>

#include "platform/appkit/NSResponder.h"
#include "platform/port/NSGeometry.h"

namespace velmora {

class NSView;
class NSWindow;

/// A panel that slides out of a window's edge and lies in a window of its own.
class NSDrawer : public NSObject {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }
    virtual std::shared_ptr<NSView> contentView() = 0;
};

/// A window of the application, the host's or ours: here, what the system asks of any. Desktops
/// derive from it for the host's.
class NSWindow : public NSResponder {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    /// The window with its decorations, in screen coordinates.
    virtual NSRect frame() = 0;
    virtual std::shared_ptr<NSView> contentView() = 0;
    /// Empty without drawers.
    virtual std::vector<std::shared_ptr<NSDrawer>> drawers() = 0;
    virtual int windowNumber() = 0;

    /// Makes it the window that takes the keys, without changing the order of the windows where
    /// the desktop lets us. NSApplication's key window is this one from here on.
    virtual void makeKeyWindow() = 0;

    /// What is asked first when a key or a scroll comes; null for nothing.
    virtual NSResponderRef firstResponder() { return nullptr; }
    /// False when the responder refuses.
    virtual bool makeFirstResponder(const NSResponderRef& responder);

    /// Whether the window hears of motion without a button.
    virtual bool acceptsMouseMovedEvents() { return acceptsMouseMovedEvents_; }
    virtual void setAcceptsMouseMovedEvents(bool accepts) { acceptsMouseMovedEvents_ = accepts; }

    /// A point of the screen in the window's base coordinates.
    NSPoint convertScreenToBase(NSPoint point);

private:
    bool acceptsMouseMovedEvents_ = false;
};

using NSWindowRef = std::shared_ptr<NSWindow>;

}  // namespace velmora
