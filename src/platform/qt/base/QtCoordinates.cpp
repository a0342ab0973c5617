#include "platform/qt/base/QtCoordinates.h"

#include <QGuiApplication>
#include <QScreen>

namespace velmora {

namespace {

QPointF lowerLeft() {
    const QScreen* screen = QGuiApplication::primaryScreen();
    return screen ? QRectF(screen->geometry()).bottomLeft() : QPointF();
}

}  // namespace

NSPoint screenPoint(const QPointF& global) {
    const QPointF origin = lowerLeft();
    return {static_cast<float>(global.x() - origin.x()),
            static_cast<float>(origin.y() - global.y())};
}

NSRect screenRect(const QRectF& global) {
    return {screenPoint(global.bottomLeft()),
            {static_cast<float>(global.width()), static_cast<float>(global.height())}};
}

QPointF globalPoint(NSPoint screen) {
    const QPointF origin = lowerLeft();
    return {origin.x() + static_cast<double>(screen.x), origin.y() - static_cast<double>(screen.y)};
}

NSRect viewRect(const QRectF& rect, int height) {
    return {{static_cast<float>(rect.left()), static_cast<float>(height - rect.bottom())},
            {static_cast<float>(rect.width()), static_cast<float>(rect.height())}};
}

}  // namespace velmora
