#pragma once

#include <QPointer>
#include <QWidget>

#include "platform/appkit/NSView.h"
#include "platform/appkit/NSWindow.h"

namespace velmora {

class QtContextMenus;
class QtWindow;

/// A widget of the host as a view. Made on demand: two views of one widget are two objects.
class QtView final : public NSView {
public:
    QtView(std::shared_ptr<QtWindow> window, QtContextMenus& contextMenus, QWidget& widget);

    /// Asked of a window's content view, for points of the window's base coordinates.
    NSViewRef hitTest(NSPoint point) override;

    /// Has the widget open its context menu where nobody sees it. What the host's code throws
    /// comes out here.
    std::shared_ptr<NSMenu> menuForEvent(const NSEventRef& event) override;

    NSWindowRef window() override;

private:
    QPointF globalPointOf(NSPoint base) const;

    std::shared_ptr<QtWindow> window_;
    QtContextMenus& contextMenus_;
    QPointer<QWidget> widget_;
};

}  // namespace velmora
