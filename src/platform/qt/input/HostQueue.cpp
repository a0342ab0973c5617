#include "platform/qt/input/HostQueue.h"

#include <qpa/qwindowsysteminterface.h>
#include <QKeyEvent>

#include "platform/qt/base/HostInput.h"
#include "platform/qt/base/QtGuard.h"
#include "platform/qt/panels/QtPanelKeys.h"

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
    return HostInput::isSending(event);
}

void HostQueue::sendNext() {
    if (events_.empty()) return;
    const std::shared_ptr<const QtOriginal> original = events_.front();
    events_.pop_front();
    if (!events_.empty()) timer_.start(0);
    if (original->mouse()) {
        HostInput::sendMouse(*original);
    } else {
        sendKey(*original, *original->key());
    }
}

void HostQueue::sendKey(const QtOriginal& original, const QtKey& key) {
    QPointer<QWindow> window = original.window;
    if (!window || !window->isVisible()) return;
    if (key.type == QEvent::KeyPress) {
        sendsShortcutOverride_ = true;
        keyIsTaken_ = false;
        const bool wasShortcut = QWindowSystemInterface::handleShortcutEvent(
            window, static_cast<unsigned long>(original.timestamp), key.key, original.modifiers,
            key.scanCode, key.virtualKey, key.nativeModifiers, key.text, key.autoRepeat,
            static_cast<unsigned short>(key.count));
        sendsShortcutOverride_ = false;
        if (wasShortcut || keyIsTaken_ || !window) return;
    }
    QKeyEvent event(key.type, key.key, original.modifiers, key.scanCode, key.virtualKey,
                    key.nativeModifiers, key.text, key.autoRepeat,
                    static_cast<unsigned short>(key.count));
    event.setTimestamp(static_cast<decltype(event.timestamp())>(original.timestamp));
    HostInput::markSpontaneous(event);
    if (!panelKeys_.deliver(*window, event)) HostInput::send(*window, event);
}

}  // namespace velmora
