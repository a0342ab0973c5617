#pragma once

#include <memory>
#include <vector>

#include "platform/foundation/NSGeometry.h"
#include "platform/runtime/NSObject.h"

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

/// A window of the application: here, what the system asks of the host's windows. Desktops derive
/// from it.
class NSWindow : public NSObject {
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

    /// A point of the screen in the window's base coordinates.
    NSPoint convertScreenToBase(NSPoint point);
};

using NSWindowRef = std::shared_ptr<NSWindow>;

}  // namespace velmora
