#include "platform/qt/HostQueue.h"

#include <qpa/qwindowsysteminterface.h>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScopedValueRollback>

#include "platform/qt/QtGuard.h"
#include "platform/qt/QtPanelKeys.h"

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

HostQueue::HostQueue(QtPanelKeys& panelKeys) : panelKeys_(panelKeys) {
    timer_.setSingleShot(true);
    connect(&timer_, &QTimer::timeout, this,
            [this] { guarded("HostQueue", [this] { sendNext(); }); });
}

void HostQueue::append(const QtEvent& event) {
    events_.push_back(event.sharedOriginal());
    if (!timer_.isActive()) timer_.start(0);
}

bool HostQueue::sends(const QEvent* event) {
    if (sendsShortcutOverride_ && event->type() == QEvent::ShortcutOverride) {
        sendsShortcutOverride_ = false;
        return true;
    }
    if (event != sent_) return false;
    sent_ = nullptr;
    return true;
}

void HostQueue::sendNext() {
    if (events_.empty()) return;
    const std::shared_ptr<const QtOriginal> original = events_.front();
    events_.pop_front();
    if (!events_.empty()) timer_.start(0);
    if (const QtMouse* mouse = original->mouse()) {
        sendMouse(*original, *mouse);
    } else {
        sendKey(*original, *original->key());
    }
}

void HostQueue::sendMouse(const QtOriginal& original, const QtMouse& mouse) {
    QWindow* window = original.window;
    const bool released = mouse.type == QEvent::MouseButtonRelease;
    if (!window || (!released && !window->isVisible())) {
        // Nobody is left to hear of it, except Qt itself, which would take the button for pressed.
        if (released) sendMouseEvent(*QCoreApplication::instance(), original, mouse, mouse.type);
        return;
    }
    sendMouseEvent(*window, original, mouse, mouse.type);
    if (mouse.opensDoubleClick && original.window) {
        sendMouseEvent(*original.window, original, mouse, QEvent::MouseButtonDblClick);
    }
}

void HostQueue::sendMouseEvent(QObject& receiver, const QtOriginal& original, const QtMouse& mouse,
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
    notify(receiver, event);
}

void HostQueue::sendKey(const QtOriginal& original, const QtKey& key) {
    QPointer<QWindow> window = original.window;
    if (!window || !window->isVisible()) return;
    if (key.type == QEvent::KeyPress) {
        sendsShortcutOverride_ = true;
        const bool wasShortcut = QWindowSystemInterface::handleShortcutEvent(
            window, static_cast<unsigned long>(original.timestamp), key.key, original.modifiers,
            key.scanCode, key.virtualKey, key.nativeModifiers, key.text, key.autoRepeat,
            static_cast<unsigned short>(key.count));
        sendsShortcutOverride_ = false;
        if (wasShortcut || !window) return;
    }
    QKeyEvent event(key.type, key.key, original.modifiers, key.scanCode, key.virtualKey,
                    key.nativeModifiers, key.text, key.autoRepeat,
                    static_cast<unsigned short>(key.count));
    event.setTimestamp(static_cast<decltype(event.timestamp())>(original.timestamp));
    notify(*window, event);
}

void HostQueue::notify(QObject& receiver, QEvent& event) {
    QSpontaneKeyEvent::mark(event);
    if (QtPanelKeys::isKey(event) && panelKeys_.deliver(receiver, event)) return;
    const QScopedValueRollback<const QEvent*> sending(sent_, &event);
    QCoreApplication::instance()->notify(&receiver, &event);
}

}  // namespace velmora
