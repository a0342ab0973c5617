#pragma once

#include <QGuiApplication>
#include <QPointF>
#include <QRect>
#include <QScreen>

#include "platform/foundation/NSGeometry.h"

namespace velmora {

/// Qt counts logical pixels from the upper left corner of its desktop, y growing downward; the
/// layer from the lower left corner of the main screen, y growing upward. All conversion between
/// the two is here.

/// The lower left corner of the main screen, in Qt's coordinates.
inline QPointF mainScreenOrigin() {
    const QScreen* screen = QGuiApplication::primaryScreen();
    if (!screen) return {};
    const QRectF area = screen->geometry();
    return {area.x(), area.y() + area.height()};
}

/// A point of Qt's desktop on the layer's screen. The upper edge of a row of pixels is its y, so
/// that the uppermost row of a window lies in the window's frame.
inline NSPoint screenPoint(QPointF global) {
    const QPointF origin = mainScreenOrigin();
    return {static_cast<float>(global.x() - origin.x()),
            static_cast<float>(origin.y() - global.y())};
}

inline QPointF globalPoint(NSPoint point) {
    const QPointF origin = mainScreenOrigin();
    return {origin.x() + static_cast<qreal>(point.x), origin.y() - static_cast<qreal>(point.y)};
}

inline NSRect screenRect(const QRectF& global) {
    return {screenPoint(QPointF(global.left(), global.top() + global.height())),
            {static_cast<float>(global.width()), static_cast<float>(global.height())}};
}

}  // namespace velmora
