#pragma once

#include <QKeyEvent>
#include <QMouseEvent>

#include "platform/appkit/NSEvent.h"

class QWidget;

namespace velmora {

// The platform's events for what a widget of ours is given, for its control. They are of no window,
// so that their places are on the screen.

/// With what the toolkit has given the widget. Used only while the toolkit delivers that.
class QtControlEvent final : public NSEvent {
public:
    QtControlEvent(Fields fields, QEvent& original)
        : NSEvent(std::move(fields)), original_(original) {}
    QEvent& original() const { return original_; }

private:
    QEvent& original_;
};

/// A key that was pressed. Null for a modifier key, and for one that the platform does not know.
NSEventRef keyEventFor(QKeyEvent& event);

/// A button that was pressed over the widget.
NSEventRef pressEventFor(QMouseEvent& event, const QWidget& widget);

}  // namespace velmora
