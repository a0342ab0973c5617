#include "platform/qt/trace/QtDrawnCanvas.h"

#include <qpa/qplatformscreen.h>
#include <qpa/qplatformwindow.h>
#include <QPaintEvent>
#include <QPainter>
#include <QScreen>
#include <QWindow>

#include "platform/qt/base/QtCoordinates.h"
#include "platform/qt/base/QtGuard.h"
#include "platform/qt/base/X11Connection.h"
#include "platform/qt/windows/QtWindows.h"

namespace velmora {

namespace {

QRect scaled(const QRect& rect, double factor) {
    return QRectF(QPointF(rect.topLeft()) * factor, QSizeF(rect.size()) * factor).toAlignedRect();
}

}  // namespace

QtDrawnCanvas::QtDrawnCanvas(Kind kind, bool staysOnTop, QWidget* around)
    : QWidget(around),
      kind_(kind),
      // Without translucency half a pixel is none.
      picture_(kind == Kind::shaped ? Edges::sharp : Edges::smooth) {
    QtWindows::markAsOwn(*this);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAttribute(Qt::WA_NoSystemBackground);
    setFocusPolicy(Qt::NoFocus);
    if (kind == Kind::inHost) return;
    Qt::WindowFlags flags = Qt::Tool | Qt::FramelessWindowHint | Qt::WindowDoesNotAcceptFocus |
                            Qt::WindowTransparentForInput | Qt::NoDropShadowWindowHint |
                            Qt::BypassWindowManagerHint;
    if (staysOnTop) flags |= Qt::WindowStaysOnTopHint;
    setWindowFlags(flags);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_QuitOnClose, false);
    if (kind == Kind::translucent) setAttribute(Qt::WA_TranslucentBackground);
    const WId window = winId();
    // Compositing managers give no shadow, which would be a rectangle's, to what is only dragged
    // about. Qt 6 tells them so of a window that is there already.
    setAttribute(Qt::WA_X11NetWmWindowTypeDND);
    if (kind != Kind::shaped) return;
    shape_ = std::make_unique<X11Shape>(static_cast<std::uint32_t>(window));
    shape_->set({});
}

void QtDrawnCanvas::place(NSRect frame) {
    if (kind_ == Kind::inHost) {
        setGeometry(QRect(QPoint(), window()->size()));
        return;
    }
    const QPointF upperLeft = globalPoint({frame.origin.x, frame.origin.y + frame.size.height});
    setGeometry(QRectF(upperLeft, QSizeF(static_cast<double>(frame.size.width),
                                         static_cast<double>(frame.size.height)))
                    .toAlignedRect());
    // What becomes of a place in pixels is the toolkit's to say, and it rounds. Asked now, since a
    // late answer of the window system to an earlier place may change what it says for a moment.
    const QWindow* handle = windowHandle();
    if (!handle || !handle->handle() || !handle->screen()) return;
    const QPoint corner =
        handle->handle()->geometry().topLeft() - handle->screen()->handle()->geometry().topLeft();
    if (corner == corner_) return;
    if (shape_) shape_->move(corner_ - corner);
    corner_ = corner;
    moved_ = true;
}

QPointF QtDrawnCanvas::planeOrigin() const {
    if (kind_ == Kind::inHost) return mapToGlobal(QPoint(0, 0));
    const QWindow* handle = windowHandle();
    return handle && handle->screen() ? handle->screen()->geometry().topLeft() : QPoint();
}

void QtDrawnCanvas::draw(const DisplayList& list, NSPoint lowerLeft) {
    const double scale = devicePixelRatioF();
    const QPointF from = (globalPoint(lowerLeft) - planeOrigin()) * scale;
    bringUp(picture_.show(list, QTransform(scale, 0, 0, -scale, from.x(), from.y())));
}

void QtDrawnCanvas::bringUp(const LayerChange& change) {
    if (shape_ && !change.area.isEmpty()) {
        const QRect shaped = change.onlyAdds ? change.area : picture_.bounds();
        std::vector<QRect> rects = picture_.runs(shaped);
        for (QRect& rect : rects) rect.translate(-corner_);
        if (change.onlyAdds) {
            shape_->add(rects);
        } else {
            shape_->set(rects);
        }
    }
    if (moved_) {
        moved_ = false;
        repaint();
    } else if (!change.area.isEmpty()) {
        repaint(scaled(change.area.translated(-corner_), 1 / devicePixelRatioF()));
    }
}

void QtDrawnCanvas::setAlpha(float alpha) {
    alpha_ = static_cast<double>(alpha);
    if (kind_ != Kind::inHost) {
        setWindowOpacity(alpha_);
        flushHostConnection();
    } else if (isVisible()) {
        repaint(scaled(picture_.bounds(), 1 / devicePixelRatioF()));
    }
}

void QtDrawnCanvas::clear() {
    picture_.clear();
    if (shape_) shape_->set({});
}

void QtDrawnCanvas::paintEvent(QPaintEvent* event) {
    guarded("Drawing a window of ours", [this, event] {
        QPainter painter(this);
        if (kind_ == Kind::inHost) painter.setOpacity(alpha_);
        const double scale = devicePixelRatioF();
        painter.scale(1 / scale, 1 / scale);
        painter.translate(-corner_);
        picture_.paint(painter, scaled(event->rect(), scale).translated(corner_));
    });
}

}  // namespace velmora
