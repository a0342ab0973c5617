#pragma once

#include <QPointF>
#include <QRectF>

#include "platform/port/NSGeometry.h"

namespace velmora {

/// Qt counts logical pixels from the upper left corner of its desktop, y growing downward; the
/// layer from the lower left corner of the main screen, y growing upward. All conversion between
/// the two is here. The upper edge of a row of pixels is its y.

NSPoint screenPoint(const QPointF& global);
NSRect screenRect(const QRectF& global);
QPointF globalPoint(NSPoint screen);

/// A rectangle of a widget so high, in the coordinates of a view that it fills: their origin is its
/// lower left corner.
NSRect viewRect(const QRectF& rect, int height);

}  // namespace velmora
