#include "platform/qt/QtPinnedPointer.h"

#include <qpa/qplatformscreen.h>
#include <QCursor>
#include <QGuiApplication>
#include <QScreen>
#include <cmath>
#include <utility>

#include "platform/qt/X11RawMotion.h"

namespace velmora {

namespace {

/// The toolkit's pixel in which the place lies: the last one of a screen goes on until the next.
QPoint pixelAt(QPointF place) {
    return {static_cast<int>(std::floor(place.x())), static_cast<int>(std::floor(place.y()))};
}

/// The screen at the place, or the main one; null without any.
const QScreen* screenAt(QPointF place) {
    const QScreen* screen = QGuiApplication::screenAt(pixelAt(place));
    return screen ? screen : QGuiApplication::primaryScreen();
}

/// The X server's coordinates for those of the toolkit.
QPoint nativePlace(QPointF place, const QScreen& screen) {
    const QPointF inside = place - screen.geometry().topLeft();
    return screen.handle()->geometry().topLeft() + (inside * screen.devicePixelRatio()).toPoint();
}

}  // namespace

QtPinnedPointer::QtPinnedPointer() = default;
QtPinnedPointer::~QtPinnedPointer() = default;

void QtPinnedPointer::pin(QPointF place) {
    pinned_ = true;
    raw_ = std::make_unique<X11RawMotion>();
    const QScreen* screen = screenAt(place);
    const std::optional<QPoint> start =
        raw_->isOn() && screen ? raw_->begin() : std::optional<QPoint>();
    if (!start) {
        raw_.reset();
        pixels_ = 1;
        place_ = pixelAt(place);
        seen_ = QCursor::pos();
    } else {
        // Motion counts from that moment, so the pointer's place must be of the same.
        pixels_ = screen->devicePixelRatio();
        place_ = nativePlace(place, *screen);
        seen_ = *start;
        // The toolkit may have meant the pixel beside.
        const QPoint off = seen_ - place_;
        if (std::abs(off.x()) < pixels_ && std::abs(off.y()) < pixels_) place_ = seen_;
    }
    rest_ = QPointF(seen_ - place_) / pixels_;
}

void QtPinnedPointer::lose() {
    if (!pinned_) return;
    lost_ = true;
    pinned_ = false;
    raw_.reset();
}

void QtPinnedPointer::release() {
    lost_ = false;
    if (!pinned_) return;
    // What has moved until now shall not move the pointer.
    motion();
    pinned_ = false;
    raw_.reset();
}

QPointF QtPinnedPointer::motion() {
    if (!raw_) {
        const QPoint now = QCursor::pos();
        const QPoint moved = now - seen_;
        seen_ = now;
        if (now == place_) return moved;
        QCursor::setPos(place_);
        // Where pointers cannot be set, it goes on from where it is.
        seen_ = QCursor::pos();
        return moved;
    }
    const auto now = raw_->take();
    if (!now) return {};
    if (now->pointer != place_) raw_->moveTo(place_);
    if (!now->isPlace) return now->motion / pixels_;
    // A device that tells places goes on from where it was, not from where the pointer is put.
    return QPointF(now->pointer - std::exchange(seen_, now->pointer)) / pixels_;
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
