#pragma once

#include <memory>

#include "platform/appkit/NSView.h"
#include "platform/appkit/NSWindow.h"
#include "platform/appkit/drawing/NSGraphicsContext.h"

namespace velmora {

class NSDrawnWindow;

/// What an NSDrawnWindow needs of its desktop. Owned by the window. Coordinates are screen
/// coordinates.
class DrawnWindowPeer {
public:
    virtual ~DrawnWindowPeer() = default;
    virtual void setFrame(NSRect frame) = 0;
    virtual void setAlphaValue(float alpha) = 0;
    /// Shows the window over all windows that have no higher level.
    virtual void orderFront() = 0;
    virtual void orderOut() = 0;
    /// Shows this from here on, soon at the latest; lists that follow each other fast may be left
    /// out but for the last.
    virtual void show(DisplayList list) = 0;
};

/// A view of ours that fills a drawn window.
class NSDrawnView : public NSView {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    /// Draws the view into the current context, in the window's base coordinates.
    virtual void drawRect(NSRect rect) = 0;

    /// Draws it at once, as far as it lies in a window.
    void display();
    NSRect frame();

    std::shared_ptr<NSWindow> window() override;
    // The pointer goes through it.
    std::shared_ptr<NSView> hitTest(NSPoint /*point*/) override { return nullptr; }
    std::shared_ptr<NSMenu> menuForEvent(const NSEventRef& /*event*/) override { return nullptr; }

private:
    friend class NSDrawnWindow;
    NSDrawnWindow* window_ = nullptr;
};

using NSDrawnViewRef = std::shared_ptr<NSDrawnView>;

/// The level of windows that float over all others but menus' and the like.
inline constexpr int kCGStatusWindowLevelKey = 9;
/// The level for a key; only the one above is known, all others are the normal level.
int CGWindowLevelForKey(int key);

/// A window of our own that is only looked at: borderless and transparent where nothing is drawn.
/// The pointer and the keys go through it, and it is none of NSApplication's windows. It has no
/// shadow: desktops would draw one of its whole rectangle.
class NSDrawnWindow : public NSWindow {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }
    ~NSDrawnWindow() override;

    NSRect frame() override { return frame_; }
    void setFrame_display(NSRect frame, bool display);
    float alphaValue() const { return alpha_; }
    void setAlphaValue(float alpha);
    int level() const { return level_; }
    /// To be set before the window is shown.
    void setLevel(int level) { level_ = level; }
    void orderFront();
    void orderOut();
    void display();

    void setContentView(NSDrawnViewRef view);
    std::shared_ptr<NSView> contentView() override { return view_; }
    std::vector<std::shared_ptr<NSDrawer>> drawers() override { return {}; }
    int windowNumber() override { return 0; }
    void makeKeyWindow() override {}

private:
    // The desktop's window is made when the first of these needs it.
    DrawnWindowPeer& peer();

    NSRect frame_;
    float alpha_ = 1;
    int level_ = 0;
    NSDrawnViewRef view_;
    std::unique_ptr<DrawnWindowPeer> peer_;
};

}  // namespace velmora
