#pragma once

#include <QKeyEvent>
#include <QMouseEvent>

#include "platform/appkit/NSEvent.h"

class QWidget;

namespace velmora {

// The platform's events for what a widget of ours is given, for its control. They are of no window,
// so that their places are on the screen.

/// A key that was pressed. Null for a modifier key, and for one that the platform does not know.
NSEventRef keyEventFor(const QKeyEvent& event);

/// A button that was pressed over the widget.
NSEventRef pressEventFor(const QMouseEvent& event, const QWidget& widget);

}  // namespace velmora
