#pragma once

#include <QPainterPath>
#include <QPen>
#include <QTransform>

#include "platform/appkit/drawing/NSGraphicsContext.h"

class QPainter;

namespace velmora {

QTransform qtTransform(const NSAffineTransform& transform);
QColor qtColor(NSColor color);
NSColor nsColor(const QColor& color);
QPainterPath qtPath(const PathElements& elements);
/// A pen that strokes in the coordinates of the path, with the style's dashes.
QPen qtPen(const StrokeStyle& style, NSColor color);

/// Replaces what is in the rectangle. The painter's transformation leads from the base coordinates
/// of the list that the operation is of.
void play(const FillOperation& fill, QPainter& painter);

}  // namespace velmora
