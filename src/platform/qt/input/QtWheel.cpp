#include "platform/qt/input/QtWheel.h"

#include <QApplication>
#include <QWheelEvent>
#include <QWidget>
#include <QWindow>
#include <cmath>

#include "platform/appkit/NSEvent.h"

namespace velmora {

namespace {

/// A notch of a wheel, 120 eighths of a degree, is three lines for the toolkit.
constexpr double anglePerLine = 40;

}  // namespace

void QtWheel::scroll(const NSEvent& event, QPoint place) {
    rest_ += QPointF(event.deltaX(), event.deltaY()) * anglePerLine;
    const QPoint angle(static_cast<int>(std::trunc(rest_.x())),
                       static_cast<int>(std::trunc(rest_.y())));
    rest_ -= angle;
    QWidget* widget = QApplication::widgetAt(place);
    QWindow* window = widget ? widget->window()->windowHandle() : QGuiApplication::focusWindow();
    if (angle.isNull() || !window) return;
    QWheelEvent wheel(window->mapFromGlobal(place), place, QPoint(), angle, Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(window, &wheel);
}

}  // namespace velmora
