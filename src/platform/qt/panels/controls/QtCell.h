#pragma once

#include "platform/appkit/drawing/NSColor.h"

class QPainter;
class QRectF;

namespace velmora {

class NSCell;

/// The vertical coordinate of the view that a cell is drawn in.
enum class YAxis { up, down };

/// Draws the cell into the rectangle, as a view of its own that it fills; nothing reaches beyond
/// it. Tables have their y axis down. What the cell draws in black is drawn in `ink`, the colour of
/// texts there. A guarded call: nothing of it is thrown into the host.
void drawCell(NSCell& cell, const QRectF& rect, YAxis axis, QPainter& painter,
              NSColor ink = NSColor::blackColor());

}  // namespace velmora
