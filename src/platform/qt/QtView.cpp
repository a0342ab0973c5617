#include "platform/qt/QtView.h"

#include "platform/qt/QtContextMenus.h"
#include "platform/qt/QtCoordinates.h"
#include "platform/qt/QtModality.h"
#include "platform/qt/QtWindow.h"

namespace velmora {

QtView::QtView(std::shared_ptr<QtWindow> window, QtContextMenus& contextMenus, QWidget& widget)
    : window_(std::move(window)), contextMenus_(contextMenus), widget_(&widget) {}

QPointF QtView::globalPointOf(NSPoint base) const {
    const NSPoint origin = window_->frame().origin;
    return globalPoint({origin.x + base.x, origin.y + base.y});
}

NSViewRef QtView::hitTest(NSPoint point) {
    if (!widget_) return nullptr;
    const QPoint local = widget_->mapFromGlobal(globalPointOf(point).toPoint());
    if (!widget_->rect().contains(local)) return nullptr;
    QWidget* hit = widget_->childAt(local);
    if (!hit) return std::static_pointer_cast<NSView>(shared_from_this());
    return std::make_shared<QtView>(window_, contextMenus_, *hit);
}

std::shared_ptr<NSMenu> QtView::menuForEvent(const NSEventRef& event) {
    if (!widget_ || !event || isBlockedByModal(*widget_)) return nullptr;
    return contextMenus_.menuAt(*widget_, globalPointOf(event->locationInWindow()).toPoint());
}

NSWindowRef QtView::window() {
    return window_;
}

}  // namespace velmora
