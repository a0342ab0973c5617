#pragma once

#include <QPoint>
#include <QPointF>

namespace velmora {

class NSEvent;

/// Gives the host wheel events for scrolling that no scroll area takes.
class QtWheel {
public:
    /// To the widget at the place, or what holds it, as the toolkit does with those of a mouse.
    void scroll(const NSEvent& event, QPoint place);

private:
    /// What is not yet a whole eighth of a degree.
    QPointF rest_;
};

}  // namespace velmora
