#include "platform/qt/input/QtPinnedPointer.h"

#include <qpa/qplatformscreen.h>
#include <QCursor>
#include <QGuiApplication>
#include <QScreen>
#include <cmath>
#include <utility>

#include "platform/qt/input/X11RawMotion.h"

namespace velmora {

namespace {

/// The toolkit's pixel in which the place lies: the last one of a screen goes on until the next.
QPoint pixelAt(QPointF place) {
    return {static_cast<int>(std::floor(place.x())), static_cast<int>(std::floor(place.y()))};
}

/// How many of the X server's pixels are one of the toolkit's there, in the server's coordinates.
double scaleAt(QPoint serverPlace) {
    for (const QScreen* screen : QGuiApplication::screens()) {
        if (screen->handle()->geometry().contains(serverPlace)) return screen->devicePixelRatio();
    }
    return qGuiApp->devicePixelRatio();
}

/// The X server's coordinates for those of the toolkit; nothing outside the screens.
std::optional<QPoint> serverPlaceFor(QPointF place) {
    const QScreen* screen = QGuiApplication::screenAt(pixelAt(place));
    if (!screen) return {};
    const QPointF inside = place - screen->geometry().topLeft();
    return screen->handle()->geometry().topLeft() + (inside * screen->devicePixelRatio()).toPoint();
}

}  // namespace

class QtPinnedPointer::Hold {
public:
    virtual ~Hold() = default;

    /// Sets the pointer back to its place, and tells how far the mouse has moved since this was
    /// asked last, in the toolkit's pixels.
    virtual QPointF motion() = 0;
};

/// Has only coordinates of the X server, which can be finer than the toolkit's.
class QtPinnedPointer::ServerHold final : public Hold {
public:
    /// Null where no server tells motion.
    static std::unique_ptr<Hold> begin(std::optional<QPointF> press) {
        auto hold = std::make_unique<ServerHold>();
        // Motion counts from that moment, so the pointer's place must be of the same.
        const std::optional<QPoint> start =
            hold->server_.isOn() ? hold->server_.begin() : std::nullopt;
        if (!start) return nullptr;
        hold->scale_ = scaleAt(*start);
        hold->place_ = hold->told_ = *start;
        const std::optional<QPoint> pressed = press ? serverPlaceFor(*press) : std::nullopt;
        const QPoint since = pressed ? *start - *pressed : QPoint();
        // The toolkit may have meant the pixel beside.
        if (std::abs(since.x()) >= hold->scale_ || std::abs(since.y()) >= hold->scale_) {
            hold->place_ = *pressed;
            hold->first_ = since;
        }
        return hold;
    }

    QPointF motion() override {
        const auto now = server_.take();
        if (!now) return {};
        QPointF moved = now->motion + std::exchange(first_, {});
        // A device that tells places goes on from where it was, not from where the pointer is put.
        if (now->told) moved += *now->told - std::exchange(told_, *now->told);
        if (now->pointer != place_) server_.moveTo(place_);
        return moved / scale_;
    }

private:
    X11RawMotion server_;
    double scale_ = 1;
    QPoint place_;
    /// Where a device has told last that it is.
    QPoint told_;
    /// From the press to the beginning.
    QPointF first_;
};

/// Has only coordinates of the toolkit.
class QtPinnedPointer::ToolkitHold final : public Hold {
public:
    explicit ToolkitHold(std::optional<QPointF> press)
        : seen_(QCursor::pos()), place_(press ? pixelAt(*press) : seen_), first_(seen_ - place_) {}

    QPointF motion() override {
        const QPoint now = QCursor::pos();
        const QPoint moved = now - seen_ + std::exchange(first_, {});
        seen_ = now;
        if (now == place_) return moved;
        QCursor::setPos(place_);
        // Where pointers cannot be set, it goes on from where it is.
        seen_ = QCursor::pos();
        return moved;
    }

private:
    QPoint seen_;
    QPoint place_;
    /// From the press to the beginning.
    QPoint first_;
};

QtPinnedPointer::QtPinnedPointer() = default;
QtPinnedPointer::~QtPinnedPointer() = default;

void QtPinnedPointer::pin(std::optional<QPointF> press) {
    rest_ = {};
    hold_ = ServerHold::begin(press);
    if (!hold_) hold_ = std::make_unique<ToolkitHold>(press);
}

bool QtPinnedPointer::lose() {
    const bool wasPinned = hold_ != nullptr;
    hold_.reset();
    return wasPinned;
}

void QtPinnedPointer::release() {
    // What has moved until now shall not move the pointer.
    if (hold_) hold_->motion();
    hold_.reset();
}

bool QtPinnedPointer::hasMoved() {
    if (!hold_) return false;
    rest_ += hold_->motion();
    return std::abs(rest_.x()) >= 1 || std::abs(rest_.y()) >= 1;
}

CGMouseDelta QtPinnedPointer::takeDelta() {
    if (!hold_) return {};
    rest_ += hold_->motion();
    const CGMouseDelta delta{static_cast<std::int32_t>(std::trunc(rest_.x())),
                             static_cast<std::int32_t>(std::trunc(rest_.y()))};
    rest_ -= QPointF(delta.x, delta.y);
    return delta;
}

}  // namespace velmora
