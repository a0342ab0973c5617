#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/appkit/NSContentView.h"
#include "platform/appkit/NSWindow.h"

namespace velmora {

class NSPanel;

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
    virtual void makeKeyWindow() = 0;
    virtual void orderOut() = 0;
    virtual bool isVisible() = 0;

    /// Controls were added to the panel's content view, or removed from it.
    virtual void contentChanged() = 0;

    /// Lets the host go on, with the panel as the only window that takes input, until endModal is
    /// called, the user closes the panel, or the application quits.
    virtual void runModal() = 0;
    virtual void endModal() = 0;
};

/// A window of our own: rows of labels, fields and controls under a title.
class NSPanel final : public NSWindow {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    using Label = NSContentView::Label;
    using Cell = NSContentView::Cell;
    using Row = NSContentView::Row;

    NSPanel(std::string title, std::vector<Row> rows);
    /// Its controls are removed.
    ~NSPanel() override;

    const std::string& title() const { return title_; }
    const std::vector<Row>& rows() const { return content_->rows(); }
    std::vector<NSControlRef> controls() const { return content_->subviews(); }
    std::shared_ptr<NSView> contentView() override { return content_; }
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

    // It is none of the windows that a gesture can start over.
    std::vector<std::shared_ptr<NSDrawer>> drawers() override { return {}; }
    int windowNumber() override { return 0; }

    PanelPeer& peer();

private:
    friend class NSContentView;
    void contentChanged();

    std::string title_;
    std::shared_ptr<NSContentView> content_;
    std::unique_ptr<PanelPeer> peer_;
};

using NSPanelRef = std::shared_ptr<NSPanel>;

}  // namespace velmora
