#pragma once

#include <memory>

#include "platform/appkit/NSActionCell.h"
#include "platform/appkit/NSView.h"

namespace velmora {

class NSContentView;

/// What shows a control on a desktop.
class ControlPeer {
public:
    virtual ~ControlPeer() = default;

    /// Draws what such a control looks like on this desktop. Only inside a drawRect that the peer
    /// has asked for; at other times it does nothing.
    virtual void draw() = 0;

    /// What it shows has changed.
    virtual void needsDisplay() = 0;
};

/// A view of ours in the content view of a panel, on which the user acts.
class NSControl : public NSView {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    explicit NSControl(std::shared_ptr<NSActionCell> cell) : cell_(std::move(cell)) {}

    const std::shared_ptr<NSActionCell>& cell() const { return cell_; }

    // Of its cell

    Id target() const { return cell_->target(); }
    void setTarget(const Id& target) { cell_->setTarget(target); }
    Selector action() const { return cell_->action(); }
    void setAction(Selector action) { cell_->setAction(action); }
    bool isEnabled() const { return cell_->isEnabled(); }
    void setEnabled(bool enabled);

    /// False when the target (the application, where that is null) does not respond.
    bool sendAction_to(Selector action, const Id& target);

    /// Does what a click by the user does; while it is not enabled, nothing.
    void performClick(const Id& sender);

    /// The desktop asks for it when the rectangle of the control is to be drawn. What overrides it
    /// calls it, for the control's own look.
    virtual void drawRect(NSRect rect);

    /// Takes the control out of its panel. It may be freed by that.
    virtual void removeFromSuperviewWithoutNeedingDisplay();

    // It is none of the views that a gesture can start over.
    NSViewRef hitTest(NSPoint /*point*/) override { return nullptr; }
    std::shared_ptr<NSMenu> menuForEvent(const NSEventRef& /*event*/) override { return nullptr; }
    std::shared_ptr<NSWindow> window() override;
    NSViewRef superview() override;

    // For desktops

    /// Set by whatever shows the control, which takes it back when it no longer does.
    void setPeer(ControlPeer* peer) { peer_ = peer; }
    ControlPeer* peer() const { return peer_; }

protected:
    void setNeedsDisplay();

private:
    friend class NSContentView;

    std::shared_ptr<NSActionCell> cell_;
    /// The one that holds this control; it outlives its place in it.
    NSContentView* superview_ = nullptr;
    ControlPeer* peer_ = nullptr;
};

using NSControlRef = std::shared_ptr<NSControl>;

}  // namespace velmora
