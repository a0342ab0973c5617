#include "platform/qt/menus/RightClick.h"

#include <private/qguiapplication_p.h>
#include <cmath>
#include <utility>

#include "platform/appkit/NSApplication.h"
#include "platform/qt/base/HostInput.h"

namespace velmora {

namespace {

/// The window that gets the pointer's events in place of the widget.
QWindow* windowOf(const QWidget& widget) {
    const QWidget* native = widget.windowHandle() ? &widget : widget.nativeParentWidget();
    return native ? native->windowHandle() : nullptr;
}

/// In milliseconds, by the window system's clock: not before the last event.
quint64 timestamp() {
    const NSEventRef& last = NSApp().currentEvent();
    return last ? static_cast<quint64>(std::llround(last->timestamp() * 1000)) : 0;
}

}  // namespace

RightClick::RightClick(const QWidget& widget, QPoint global) {
    QtMouse mouse;
    mouse.button = Qt::RightButton;
    mouse.global = global;
    original_.window = windowOf(widget);
    if (original_.window) mouse.local = original_.window->mapFromGlobal(global);
    original_.what = std::move(mouse);
}

RightClick::~RightClick() {
    if (hidesKeys_) {
        QGuiApplicationPrivate::modifier_buttons = QGuiApplication::queryKeyboardModifiers();
    }
}

// A host may ask the toolkit instead of the event which buttons and keys are down. The keys of the
// stroke may still be, and are none of the click's.

void RightClick::press() {
    pressed_ = true;
    Qt::KeyboardModifiers& keys = QGuiApplicationPrivate::modifier_buttons;
    hidesKeys_ = std::exchange(keys, Qt::NoModifier) != Qt::NoModifier;
    QGuiApplicationPrivate::mouse_buttons |= Qt::RightButton;
    send(QEvent::MouseButtonPress, Qt::RightButton);
}

void RightClick::release() {
    if (!std::exchange(pressed_, false)) return;
    QGuiApplicationPrivate::mouse_buttons &= ~Qt::MouseButtons(Qt::RightButton);
    send(QEvent::MouseButtonRelease, Qt::NoButton);
}

void RightClick::send(QEvent::Type type, Qt::MouseButtons buttons) {
    auto& mouse = std::get<QtMouse>(original_.what);
    mouse.type = type;
    mouse.buttons = buttons;
    original_.timestamp = timestamp();
    // The host's loop may run meanwhile, and with it whatever owns the click.
    const QtOriginal sent = original_;
    HostInput::sendMouse(sent);
}

}  // namespace velmora
