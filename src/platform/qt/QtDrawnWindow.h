#pragma once

#include <QPointer>
#include <QWidget>

#include "platform/appkit/NSDrawnWindow.h"
#include "platform/qt/X11Windows.h"

class QPainter;

namespace velmora {

/// The window of a drawn window of ours: none of the host's windows, without input, never focused,
/// and unknown to the window manager. Without a compositing manager it has the shape of what is
/// drawn. Where windows cannot be placed it lies in the host's own active window.
class QtDrawnWindow final : public DrawnWindowPeer {
public:
    explicit QtDrawnWindow(bool staysOnTop);
    ~QtDrawnWindow() override;
    QtDrawnWindow(const QtDrawnWindow&) = delete;
    QtDrawnWindow& operator=(const QtDrawnWindow&) = delete;

    void setFrame(NSRect frame) override;
    void setAlphaValue(float alpha) override;
    void orderFront() override;
    void orderOut() override;
    void show(DisplayList list) override;

private:
    class Canvas;
    /// Null without an application.
    Canvas* canvas();
    void place();

    bool staysOnTop_;
    X11Windows server_;
    NSRect frame_;
    float alpha_ = 1;
    DisplayList list_;
    /// Owned; gone before this when the host's window around it is.
    QPointer<Canvas> canvas_;
};

}  // namespace velmora
