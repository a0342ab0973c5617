#pragma once

#include <QPointer>

#include "platform/appkit/NSDrawnWindow.h"
#include "platform/qt/windows/QtOwnWindow.h"

namespace velmora {

class QtDrawnCanvas;
class QtWindows;

/// The window of a drawn window of ours: none of the host's windows, without input, never focused,
/// and unknown to the window manager. Without a compositing manager it has the shape of what is
/// drawn. Where windows cannot be placed it is drawn over the host's own active window.
class QtDrawnWindow final : public DrawnWindowPeer, public QtOwnWindow {
public:
    QtDrawnWindow(QtWindows& windows, bool staysOnTop);
    ~QtDrawnWindow() override;
    QtDrawnWindow(const QtDrawnWindow&) = delete;
    QtDrawnWindow& operator=(const QtDrawnWindow&) = delete;

    void close() override;

    void setFrame(NSRect frame) override;
    void setAlphaValue(float alpha) override;
    void orderFront() override;
    void orderOut() override;
    void show(DisplayList list) override;

private:
    /// The right one for how the desktop is now; null where nothing can be shown.
    void makeCanvas();
    void place();
    void draw();

    QtWindows* windows_;
    bool staysOnTop_;
    NSRect frame_;
    float alpha_ = 1;
    DisplayList list_;
    /// Owned; gone before this when the host's window around it is.
    QPointer<QtDrawnCanvas> canvas_;
};

}  // namespace velmora
