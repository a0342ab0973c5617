#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/appkit/ModalWindow.h"
#include "platform/appkit/controls/NSContentView.h"
#include "platform/appkit/panels/NSContentDrawer.h"

namespace velmora {

class NSPanel;

/// What an alert is about; the platform's numbers.
enum NSAlertStyle { NSWarningAlertStyle = 0, NSInformationalAlertStyle = 1 };

/// What an NSPanel needs of its desktop. Owned by the panel. Coordinates are screen coordinates.
class PanelPeer {
public:
    virtual ~PanelPeer() = default;

    /// With its decorations, as far as the desktop knows them.
    virtual NSRect frame() = 0;
    virtual void setFrameOrigin(NSPoint origin) = 0;
    virtual void center() = 0;
    /// Shows the panel in front of all windows of the application, with the keyboard, in its first
    /// field.
    virtual void makeKeyAndOrderFront() = 0;
    /// Gives it the keyboard and leaves it where it lies, where the desktop lets us.
    virtual void makeKeyWindow() = 0;
    virtual void orderOut() = 0;
    virtual bool isVisible() = 0;
    /// Its own among the numbers of all windows; 0 when there can be no window.
    virtual int windowNumber() = 0;
    /// Controls were added to the panel's content view, or removed from it.
    virtual void contentChanged() = 0;

    // A desktop that does without these shows the panel all the same.

    /// The place that the panel had before; what of it is off the screen is brought back.
    virtual void setFrame(NSRect frame) { setFrameOrigin(frame.origin); }
    virtual void titleChanged() {}
    /// The panel has a drawer that is to be open or closed.
    virtual void drawerChanged() {}
    /// Where the open drawer is.
    virtual NSRect drawerFrame() { return {}; }
    /// Another control of the panel is to have the keyboard.
    virtual void firstResponderChanged() {}
    /// As makeKeyAndOrderFront, but the panel belongs to the other one, which takes no input
    /// meanwhile.
    virtual void beginSheet(NSPanel& /*parent*/) { makeKeyAndOrderFront(); }

    /// Lets the host go on, with the panel as the only window that takes input, until endModal is
    /// called, the user closes the panel, or the application quits.
    virtual void runModal() = 0;
    virtual void endModal() = 0;
};

/// A window of our own, one of NSApplication's like those of the host: rows of labels and controls
/// under a title, and maybe a drawer. A gesture can start over it, but finds no view there. Its
/// delegate may answer `windowWillClose:` (`void(const NSNotification&)`, the panel is the object),
/// which comes once the panel no longer shows; the panel may be let go by it.
class NSPanel final : public ModalWindow {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    using Label = NSContentView::Label;
    using Cell = NSContentView::Cell;
    using MatrixRow = NSContentView::MatrixRow;
    using Row = NSContentView::Row;

    NSPanel(std::string title, std::vector<Row> rows);
    /// Its controls are removed.
    ~NSPanel() override;

    const std::string& title() const { return title_; }
    void setTitle(std::string title);
    /// Not kept alive.
    Id delegate() const { return delegate_.lock(); }
    void setDelegate(const Id& delegate) { delegate_ = delegate; }
    /// Nothing unless it is an alert, which shows the desktop's picture for its style.
    std::optional<NSAlertStyle> alertStyle() const { return alertStyle_; }
    /// Before the desktop makes its window.
    void setAlertStyle(NSAlertStyle style) { alertStyle_ = style; }
    const std::vector<Row>& rows() const { return content_->rows(); }
    std::vector<NSControlRef> controls() const { return content_->subviews(); }
    std::shared_ptr<NSView> contentView() override { return content_; }
    /// The first control with the tag, or null.
    NSControlRef viewWithTag(int tag) const { return content_->viewWithTag(tag); }
    /// The control of that name, the drawer's included; null without one.
    NSControlRef controlNamed(const std::string& name) const;
    /// Null without one.
    const NSContentDrawerRef& drawer() const { return drawer_; }
    void setDrawer(const NSContentDrawerRef& drawer);
    /// To its content view.
    void addSubview(const NSControlRef& control) { content_->addSubview(control); }

    // The panel's window is made by the desktop when the first of these is called.
    NSRect frame() override;
    void setFrameOrigin(NSPoint origin);
    void center();
    void makeKeyAndOrderFront();
    void orderOut();
    void makeKeyWindow() override;
    bool isVisible();
    int windowNumber() override;
    /// The one of its own while it is open.
    std::vector<std::shared_ptr<NSDrawer>> drawers() override;

    /// Hides the panel and tells the delegate; nothing while it does not show.
    void performClose(const Id& sender);
    void close();

    /// The panel is brought to where it was when it last closed under that name, in whichever
    /// process, and its place is kept under it from here on.
    void setFrameAutosaveName(const std::string& name);
    /// The file in which the frames are kept, one for the whole process; without it none is.
    static void setFrameFile(const std::string& path);

    /// The control that has the keyboard; null while nobody has said.
    NSResponderRef firstResponder() override { return firstResponder_.lock(); }
    /// Only for controls of the panel that take the keyboard, and null.
    bool makeFirstResponder(const NSResponderRef& responder) override;

    /// The alert that is open over the panel and blocks it, or null.
    const std::shared_ptr<NSObject>& attachedSheet() const { return attachedSheet_; }
    void setAttachedSheet(std::shared_ptr<NSObject> sheet) { attachedSheet_ = std::move(sheet); }

    void runModal() override { peer().runModal(); }
    void endModal() override { peer().endModal(); }

    // For desktops

    PanelPeer& peer();
    /// The user has closed the panel, which no longer shows. The panel and its peer may be gone
    /// when this returns.
    void userClosed();
    /// A key that is pressed while the panel has the keys, before the control with the keyboard has
    /// it: those with Command and the function keys are key equivalents of the panel's views. True
    /// when one has used it.
    bool userPressedKey(const NSEventRef& event);
    /// The user has given the keyboard to the control.
    void userFocused(const NSControlRef& control) { firstResponder_ = control; }
    /// The panel is about to be hidden: what is kept of its frame is brought up to date.
    void saveFrame();
    void drawerChanged();

private:
    void contentChanged();
    bool holds(const NSControl& control) const;

    std::string title_;
    std::string frameAutosaveName_;
    std::weak_ptr<NSObject> delegate_;
    std::weak_ptr<NSControl> firstResponder_;
    NSContentDrawerRef drawer_;
    std::optional<NSAlertStyle> alertStyle_;
    std::shared_ptr<NSObject> attachedSheet_;
    std::shared_ptr<NSContentView> content_;
    std::unique_ptr<PanelPeer> peer_;
};

using NSPanelRef = std::shared_ptr<NSPanel>;

}  // namespace velmora
