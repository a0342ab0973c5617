#include "platform/qt/trace/QtDrawnWindow.h"

#include <QApplication>

#include "platform/qt/trace/QtDrawnCanvas.h"
#include "platform/qt/windows/QtWindows.h"

namespace velmora {

QtDrawnWindow::QtDrawnWindow(QtWindows& windows, bool staysOnTop)
    : windows_(&windows), staysOnTop_(staysOnTop) {
    windows.addOwn(*this);
}

QtDrawnWindow::~QtDrawnWindow() {
    if (!windows_) return;
    windows_->removeOwn(*this);
    delete canvas_.data();
}

void QtDrawnWindow::close() {
    windows_ = nullptr;
    delete canvas_.data();
}

void QtDrawnWindow::makeCanvas() {
    using Kind = QtDrawnCanvas::Kind;
    const QString platform = QGuiApplication::platformName();
    Kind kind = Kind::translucent;
    QWidget* around = nullptr;
    if (platform.startsWith(QLatin1String("wayland"))) {
        kind = Kind::inHost;
        around = QApplication::activeWindow();
    } else if (platform == QLatin1String("xcb") && !windows_->hasCompositor()) {
        kind = Kind::shaped;
    }
    if (canvas_ && canvas_->kind() == kind && canvas_->parentWidget() == around) return;
    delete canvas_.data();
    if (kind == Kind::inHost && !around) return;
    if (kind == Kind::shaped && !X11Shape::isAvailable()) return;
    canvas_ = new QtDrawnCanvas(kind, staysOnTop_, around);
}

void QtDrawnWindow::place() {
    if (canvas_) canvas_->place(frame_);
}

void QtDrawnWindow::draw() {
    if (canvas_) canvas_->draw(list_, frame_.origin);
}

void QtDrawnWindow::setFrame(NSRect frame) {
    frame_ = frame;
    place();
}

void QtDrawnWindow::setAlphaValue(float alpha) {
    alpha_ = alpha;
    if (canvas_) canvas_->setAlpha(alpha);
}

void QtDrawnWindow::orderFront() {
    if (!windows_) return;
    // A compositing manager may have come or gone, and another window of the host be active.
    makeCanvas();
    if (!canvas_) return;
    place();
    canvas_->setAlpha(alpha_);
    draw();
    canvas_->show();
    canvas_->raise();
}

void QtDrawnWindow::orderOut() {
    list_.clear();
    if (!canvas_) return;
    canvas_->hide();
    canvas_->clear();
    // The host's window is as it was before.
    if (canvas_->parentWidget()) delete canvas_.data();
}

void QtDrawnWindow::show(DisplayList list) {
    list_ = std::move(list);
    draw();
}

}  // namespace velmora
