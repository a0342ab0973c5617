#include "platform/qt/windows/QtWindow.h"

#include <QDockWidget>

#include "platform/qt/base/QtCoordinates.h"
#include "platform/qt/windows/QtView.h"
#include "platform/qt/windows/QtWindows.h"

namespace velmora {

namespace {

/// A floating panel of a window.
class QtDrawer final : public NSDrawer {
public:
    explicit QtDrawer(std::shared_ptr<QtWindow> window) : window_(std::move(window)) {}
    NSViewRef contentView() override { return window_->contentView(); }

private:
    std::shared_ptr<QtWindow> window_;
};

}  // namespace

QtWindow::QtWindow(QtWindows& windows, QObject& host, int number)
    : windows_(windows), host_(&host), number_(number) {}

QWindow* QtWindow::handle() const {
    if (const QWidget* host = widget()) return host->windowHandle();
    return qobject_cast<QWindow*>(host_.data());
}

NSRect QtWindow::frame() {
    if (const QWidget* host = widget()) return screenRect(host->frameGeometry());
    const QWindow* window = handle();
    return window ? screenRect(window->frameGeometry()) : NSRect();
}

NSViewRef QtWindow::contentView() {
    QWidget* host = widget();
    if (!host) return nullptr;
    return viewOf(*host);
}

std::vector<std::shared_ptr<NSDrawer>> QtWindow::drawers() {
    std::vector<std::shared_ptr<NSDrawer>> drawers;
    const QWidget* host = widget();
    if (!host) return drawers;
    const auto docks = host->findChildren<QDockWidget*>();
    for (QDockWidget* dock : docks) {
        if (!dock->isWindow() || !dock->isVisible()) continue;
        drawers.push_back(std::make_shared<QtDrawer>(windows_.windowFor(*dock)));
    }
    return drawers;
}

NSViewRef QtWindow::viewOf(QWidget& widget) {
    return QtViewNode::make(std::static_pointer_cast<QtWindow>(shared_from_this()),
                            windows_.menus(), widget);
}

NSResponderRef QtWindow::firstResponder() {
    QWidget* host = widget();
    QWidget* focused = host ? host->focusWidget() : nullptr;
    if (chosen_ && focused == focusedThen_) return viewOf(*chosen_);
    return focused ? viewOf(*focused) : nullptr;
}

bool QtWindow::makeFirstResponder(const NSResponderRef& responder) {
    const auto* view = dynamic_cast<const QtViewNode*>(responder.get());
    const QPointer<QWidget> widget = view ? view->widget() : nullptr;
    if (!widget) return false;
    if (widget->focusPolicy() != Qt::NoFocus && !widget->hasFocus()) {
        widget->setFocus(Qt::MouseFocusReason);
    }
    chosen_ = widget;
    focusedThen_ = widget ? widget->window()->focusWidget() : nullptr;
    return widget;
}

void QtWindow::makeKeyWindow() {
    if (QWindow* window = handle()) windows_.makeKey(*window);
}

}  // namespace velmora
