#include "platform/qt/QtPinnedPointer.h"

#include <qpa/qplatformscreen.h>
#include <QCursor>
#include <QGuiApplication>
#include <QScreen>
#include <cmath>

#include "platform/qt/X11RawMotion.h"

namespace velmora {

namespace {

/// The screen's own pixels for a logical one, where the pointer is.
double pixelsAt(QPoint place) {
    const QScreen* screen = QGuiApplication::screenAt(place);
    return screen ? screen->devicePixelRatio() : 1;
}

/// The toolkit's coordinates for those of the X server.
QPoint logicalPlace(QPoint native) {
    const QList<QScreen*> screens = QGuiApplication::screens();
    for (const QScreen* screen : screens) {
        const QRect pixels = screen->handle()->geometry();
        if (!pixels.contains(native)) continue;
        return screen->geometry().topLeft() +
               (QPointF(native - pixels.topLeft()) / screen->devicePixelRatio()).toPoint();
    }
    return QCursor::pos();
}

}  // namespace

QtPinnedPointer::QtPinnedPointer() = default;
QtPinnedPointer::~QtPinnedPointer() = default;

void QtPinnedPointer::pin(QPoint place) {
    pinned_ = true;
    place_ = place;
    raw_ = std::make_unique<X11RawMotion>();
    if (!raw_->isOn()) raw_.reset();
    const std::optional<QPoint> start = raw_ ? raw_->begin() : std::nullopt;
    if (!start) raw_.reset();
    // Motion counts from that moment, so the pointer's place must be of the same.
    seen_ = start ? logicalPlace(*start) : QCursor::pos();
    rest_ = seen_ - place;
}

void QtPinnedPointer::release() {
    if (!pinned_) return;
    pinned_ = false;
    raw_.reset();
    if (QCursor::pos() != place_) QCursor::setPos(place_);
}

QPointF QtPinnedPointer::motion() {
    const QPoint now = QCursor::pos();
    const auto raw = raw_ ? raw_->take() : std::nullopt;
    const QPointF moved = raw ? *raw / pixelsAt(place_) : QPointF(now - seen_);
    seen_ = now;
    if (now == place_) return moved;
    QCursor::setPos(place_);
    // Where pointers cannot be set, it goes on from where it is.
    seen_ = QCursor::pos();
    return moved;
}

bool QtPinnedPointer::hasMoved() {
    if (!pinned_) return false;
    rest_ += motion();
    return std::abs(rest_.x()) >= 1 || std::abs(rest_.y()) >= 1;
}

CGMouseDelta QtPinnedPointer::takeDelta() {
    if (!pinned_) return {};
    rest_ += motion();
    const CGMouseDelta delta{static_cast<std::int32_t>(std::trunc(rest_.x())),
                             static_cast<std::int32_t>(std::trunc(rest_.y()))};
    rest_ -= QPointF(delta.x, delta.y);
    return delta;
}

}  // namespace velmora
