#pragma once

#include <memory>

#include "platform/appkit/NSView.h"

namespace velmora {

/// The part of a scroll view that shows its document. Points are the document's own coordinates.
class NSClipView : public NSResponder {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    /// Whether what stays visible is copied when the view scrolls, not drawn anew.
    bool copiesOnScroll() const { return copiesOnScroll_; }
    void setCopiesOnScroll(bool copies) { copiesOnScroll_ = copies; }

    /// The point nearest to this one that can be the origin of what is visible.
    virtual NSPoint constrainScrollPoint(NSPoint point) = 0;
    /// Makes the point the origin of what is visible.
    virtual void scrollToPoint(NSPoint point) = 0;

private:
    bool copiesOnScroll_ = true;
};

/// A view that shows a part of a document. Desktops derive from it.
class NSScrollView : public NSView {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    virtual std::shared_ptr<NSClipView> contentView() = 0;

    /// How far one line is, in the document's coordinates.
    virtual float horizontalLineScroll() = 0;
    virtual float verticalLineScroll() = 0;

    /// In the document's coordinates, whose y grows downward where the document's does.
    virtual NSRect documentVisibleRect() = 0;

    /// Has the scroll bars follow what the clip view shows.
    virtual void reflectScrolledClipView(NSClipView& clipView) = 0;
};

}  // namespace velmora
