#pragma once

#include <memory>
#include <string>

#include "platform/appkit/NSView.h"
#include "platform/appkit/controls/NSActionCell.h"

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

    /// One that only shows its cell, with nothing in it yet.
    NSControl() : NSControl(std::make_shared<NSActionCell>()) {}
    explicit NSControl(NSCellRef cell);
    ~NSControl() override;

    const NSCellRef& cell() const { return cell_; }
    /// The cell shows the control from here on. A control whose class says what its cell is keeps
    /// to that.
    void setCell(const NSCellRef& cell);

    /// What the control is called in its interface file; "" for none. The user does not see it.
    const std::string& name() const { return name_; }
    void setName(std::string name) { name_ = std::move(name); }

    int tag() const { return tag_; }
    void setTag(int tag) { tag_ = tag; }

    // What its cell holds. A control that nobody can act on has no target and no action.

    Id target() const;
    void setTarget(const Id& target);
    Selector action() const;
    void setAction(Selector action);
    bool isEnabled() const { return cell_->isEnabled(); }
    void setEnabled(bool enabled) { cell_->setEnabled(enabled); }
    const std::string& stringValue() const { return cell_->stringValue(); }
    virtual void setStringValue(const std::string& text) { cell_->setStringValue(text); }
    virtual int intValue() const { return cell_->intValue(); }
    virtual void setIntValue(int value) { cell_->setIntValue(value); }
    virtual double doubleValue() const { return cell_->doubleValue(); }
    virtual void setDoubleValue(double value) { cell_->setObjectValue(PropertyList(value)); }

    /// False when the target (the application, where that is null) does not respond.
    bool sendAction_to(Selector action, const Id& target);

    /// Does what a click by the user does; while it is not enabled, nothing.
    virtual void performClick(const Id& sender);

    /// The desktop asks for it when the rectangle of the control is to be drawn. What overrides it
    /// calls it, for the control's own look.
    virtual void drawRect(NSRect rect);

    /// Takes the control out of its panel. It may be freed by that.
    virtual void removeFromSuperviewWithoutNeedingDisplay();

    /// A cell of the control has changed.
    virtual void updateCell() { setNeedsDisplay(); }

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
    /// Sends the control's action to its target, if it has one.
    void sendAction() { sendAction_to(action(), target()); }

private:
    friend class NSContentView;

    NSCellRef cell_;
    std::string name_;
    /// The one that holds this control; it outlives its place in it.
    NSContentView* superview_ = nullptr;
    ControlPeer* peer_ = nullptr;
    int tag_ = 0;
};

using NSControlRef = std::shared_ptr<NSControl>;

}  // namespace velmora
