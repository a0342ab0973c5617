#pragma once

#include "platform/appkit/NSGraphicsContext.h"

class QPainter;

namespace velmora {

/// Plays what was drawn. The painter's transformation leads from the list's base coordinates.
void play(const DisplayList& list, QPainter& painter);

}  // namespace velmora
