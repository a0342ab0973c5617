#include "platform/qt/windows/QtView.h"

#include "platform/qt/base/QtCoordinates.h"
#include "platform/qt/windows/QtModality.h"
#include "platform/qt/windows/QtScrollView.h"
#include "platform/qt/windows/QtWindow.h"

namespace velmora {

QtViewNode::QtViewNode(std::shared_ptr<QtWindow> window, QtViewMenus& menus, QWidget& widget)
    : window_(std::move(window)), menus_(menus), widget_(&widget) {}

NSViewRef QtViewNode::make(std::shared_ptr<QtWindow> window, QtViewMenus& menus, QWidget& widget) {
    if (QtScrollView::canScroll(widget)) {
        return std::make_shared<QtScrollView>(std::move(window), menus, widget);
    }
    return std::make_shared<QtView>(std::move(window), menus, widget);
}

NSViewRef QtViewNode::viewOf(QWidget& widget) const {
    return make(window_, menus_, widget);
}

QPointF QtViewNode::globalPointOf(NSPoint base) const {
    const NSPoint origin = window_->frame().origin;
    return globalPoint({origin.x + base.x, origin.y + base.y});
}

QWidget* QtViewNode::widgetAt(NSPoint point) const {
    if (!widget_) return nullptr;
    const QPoint local = widget_->mapFromGlobal(globalPointOf(point).toPoint());
    if (!widget_->rect().contains(local)) return nullptr;
    QWidget* hit = widget_->childAt(local);
    return hit ? hit : widget_.data();
}

std::shared_ptr<NSMenu> QtViewNode::openContextMenu(const NSEventRef& event) {
    if (!widget_ || !event || isBlockedByModal(*widget_)) return nullptr;
    return menus_.menuAt(*widget_, globalPointOf(event->locationInWindow()).toPoint());
}

NSWindowRef QtViewNode::ownWindow() const {
    return window_;
}

NSViewRef QtViewNode::above() const {
    QWidget* parent = widget_ && !widget_->isWindow() ? widget_->parentWidget() : nullptr;
    return parent ? viewOf(*parent) : nullptr;
}

bool QtViewNode::takesKeys() const {
    return widget_ && widget_->isEnabled() && (widget_->focusPolicy() & Qt::ClickFocus) != 0;
}

}  // namespace velmora
