#pragma once

#include <QPoint>
#include <QWidget>

#include "platform/qt/base/QtEvent.h"

namespace velmora {

/// A click with the right button that nobody has made, as the host sees one: the toolkit itself
/// finds the receiver, moves the focus, and sends the context-menu event at the press or the
/// release, as it does on that platform.
class RightClick {
public:
    /// At the point of the whole screen, in the widget's window.
    RightClick(const QWidget& widget, QPoint global);
    ~RightClick();
    RightClick(const RightClick&) = delete;
    RightClick& operator=(const RightClick&) = delete;

    /// Returns only when the host has dealt with it; one that opens a menu may wait in a loop of
    /// its own until that is closed. What the host throws comes out here.
    void press();

    /// Once, for a press; nothing without one. Where it goes is the toolkit's affair: to the menu
    /// that is open by now, for one.
    void release();

private:
    void send(QEvent::Type type, Qt::MouseButtons buttons);

    QtOriginal original_;
    bool pressed_ = false;
    bool hidesKeys_ = false;
};

}  // namespace velmora
