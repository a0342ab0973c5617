#pragma once

#include <QColor>

#include "platform/appkit/drawing/NSColor.h"

class QPalette;

namespace velmora {

/// The colour of a text on the palette's windows. Black is the palette's own, light grey that of
/// what is not enabled, and red one that stands out from the ground; others are what they are.
QColor textColorOn(const QPalette& palette, NSColor color);

}  // namespace velmora
