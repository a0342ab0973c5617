#include "platform/qt/base/HostInput.h"

#include <QCoreApplication>
#include <QMouseEvent>
#include <QScopedValueRollback>

#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
#include <private/qevent_p.h>
#include <QPointingDevice>
#else
#include <private/qguiapplication_p.h>
#endif

// A name to which Qt's events open themselves, meant for test programs: to the host an event that
// is sent anew must look like one of the window system's.
class QSpontaneKeyEvent {
public:
    static void mark(QEvent& event) { event.setSpontaneous(); }
};

namespace velmora {

namespace {

const QEvent* sending = nullptr;

}  // namespace

void HostInput::sendMouse(const QtOriginal& original) {
    const QtMouse& mouse = *original.mouse();
    QWindow* window = original.window;
    const bool released = mouse.type == QEvent::MouseButtonRelease;
    if (!window || (!released && !window->isVisible())) {
        // Nobody is left to hear of it, except Qt itself.
        if (released) sendMouseEvent(*QCoreApplication::instance(), original, mouse, mouse.type);
        return;
    }
    sendMouseEvent(*window, original, mouse, mouse.type);
    if (mouse.opensDoubleClick && original.window) {
        sendMouseEvent(*original.window, original, mouse, QEvent::MouseButtonDblClick);
    }
}

void HostInput::sendMouseEvent(QObject& receiver, const QtOriginal& original, const QtMouse& mouse,
                               QEvent::Type type) {
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    const auto* device = static_cast<const QPointingDevice*>(mouse.device.data());
    if (!device) device = QPointingDevice::primaryPointingDevice();
    QMouseEvent event(type, mouse.local, mouse.local, mouse.global, mouse.button, mouse.buttons,
                      original.modifiers, mouse.source, device);
    if (type == QEvent::MouseButtonPress) {
        QMutableSinglePointEvent::from(event).setDoubleClick(mouse.opensDoubleClick);
    }
#else
    QMouseEvent event(type, mouse.local, mouse.local, mouse.global, mouse.button, mouse.buttons,
                      original.modifiers, mouse.source);
    if (type == QEvent::MouseButtonPress && mouse.opensDoubleClick) {
        QGuiApplicationPrivate::setMouseEventFlags(&event, Qt::MouseEventCreatedDoubleClick);
    }
#endif
    event.setTimestamp(static_cast<decltype(event.timestamp())>(original.timestamp));
    send(receiver, event);
}

void HostInput::markSpontaneous(QEvent& event) {
    QSpontaneKeyEvent::mark(event);
}

void HostInput::send(QObject& receiver, QEvent& event) {
    markSpontaneous(event);
    const QScopedValueRollback<const QEvent*> rollback(sending, &event);
    QCoreApplication::instance()->notify(&receiver, &event);
}

bool HostInput::isSending(const QEvent* event) {
    if (event != sending) return false;
    sending = nullptr;
    return true;
}

}  // namespace velmora
