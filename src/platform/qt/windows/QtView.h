#pragma once

#include <QPointer>
#include <QWidget>

#include "platform/appkit/NSMenu.h"
#include "platform/appkit/NSView.h"
#include "platform/appkit/NSWindow.h"

namespace velmora {

class QtWindow;

/// Opens the context menus of the host's widgets where nobody sees them.
class QtViewMenus {
public:
    /// The menu for a right click at the point (of the whole screen) in the widget; null without
    /// one. What the host's code throws comes out here.
    virtual NSMenuRef menuAt(QWidget& widget, QPoint global) = 0;

protected:
    ~QtViewMenus() = default;
};

/// What all views of the host's widgets have in common. Views are made on demand: two of one widget
/// are two objects.
class QtViewNode {
public:
    virtual ~QtViewNode() = default;

    /// Null once the host has destroyed it.
    QWidget* widget() const { return widget_; }

    /// A view of the kind that the widget is, in the same window.
    NSViewRef viewOf(QWidget& widget) const;
    static NSViewRef make(std::shared_ptr<QtWindow> window, QtViewMenus& menus, QWidget& widget);

protected:
    QtViewNode(std::shared_ptr<QtWindow> window, QtViewMenus& menus, QWidget& widget);

    /// Asked of a window's content view, for points of the window's base coordinates; null outside.
    QWidget* widgetAt(NSPoint point) const;

    /// Has the widget open its context menu where nobody sees it. What the host's code throws
    /// comes out here.
    std::shared_ptr<NSMenu> openContextMenu(const NSEventRef& event);

    NSWindowRef ownWindow() const;
    NSViewRef above() const;
    bool takesKeys() const;

private:
    QPointF globalPointOf(NSPoint base) const;

    std::shared_ptr<QtWindow> window_;
    QtViewMenus& menus_;
    QPointer<QWidget> widget_;
};

/// A widget of the host as a view, of one of the layer's kinds.
template <class Kind>
class QtViewOf : public Kind, public QtViewNode {
public:
    QtViewOf(std::shared_ptr<QtWindow> window, QtViewMenus& menus, QWidget& widget)
        : QtViewNode(std::move(window), menus, widget) {}

    NSViewRef hitTest(NSPoint point) override {
        QWidget* hit = widgetAt(point);
        return hit ? viewOf(*hit) : nullptr;
    }
    std::shared_ptr<NSMenu> menuForEvent(const NSEventRef& event) override {
        return openContextMenu(event);
    }
    NSWindowRef window() override { return ownWindow(); }
    NSViewRef superview() override { return above(); }
    bool acceptsFirstResponder() override { return takesKeys(); }
};

using QtView = QtViewOf<NSView>;

}  // namespace velmora
