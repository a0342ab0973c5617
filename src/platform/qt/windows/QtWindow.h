#pragma once

#include <QPointer>
#include <QWidget>
#include <QWindow>

#include "platform/appkit/NSView.h"
#include "platform/appkit/NSWindow.h"

namespace velmora {

class QtWindows;

/// A top-level widget of the host, or a window without a widget, which has no views.
class QtWindow final : public NSWindow {
public:
    QtWindow(QtWindows& windows, QObject& host, int number);

    NSRect frame() override;
    NSViewRef contentView() override;
    /// The docked panels of the window that float.
    std::vector<std::shared_ptr<NSDrawer>> drawers() override;
    int windowNumber() override { return number_; }
    void makeKeyWindow() override;
    /// The view that was made it, until the host gives the keys to another widget.
    NSResponderRef firstResponder() override;
    bool makeFirstResponder(const NSResponderRef& responder) override;

    /// Null once the host has destroyed it, the widget also for a window without one.
    QWidget* widget() const { return qobject_cast<QWidget*>(host_.data()); }
    QWindow* handle() const;

private:
    NSViewRef viewOf(QWidget& widget);

    QtWindows& windows_;
    QPointer<QObject> host_;
    int number_;
    QPointer<QWidget> chosen_;
    QPointer<QWidget> focusedThen_;
};

}  // namespace velmora
