#pragma once

#include <QObject>
#include <QTimer>
#include <deque>

#include "platform/qt/QtEvent.h"

namespace velmora {

class QtPanelKeys;

/// Events that were kept from the host and are on their way to it after all. Each is made anew and
/// sent from the host's loop, one in a pass. The next one is scheduled before an event is sent, so
/// that it also reaches a loop that the event opens: the release, the menu that the press brought
/// up.
class HostQueue final : public QObject {
public:
    explicit HostQueue(QtPanelKeys& panelKeys);

    void append(const QtEvent& event);

    bool isEmpty() const { return events_.empty(); }

    /// Whether this is one of the events that are being sent, which the hook is to let through.
    /// Says so once.
    bool sends(const QEvent* event);

private:
    void sendNext();
    void sendMouse(const QtOriginal& original, const QtMouse& mouse);
    void sendMouseEvent(QObject& receiver, const QtOriginal& original, const QtMouse& mouse,
                        QEvent::Type type);
    void sendKey(const QtOriginal& original, const QtKey& key);
    void notify(QObject& receiver, QEvent& event);

    QtPanelKeys& panelKeys_;
    std::deque<std::shared_ptr<const QtOriginal>> events_;
    QTimer timer_;
    const QEvent* sent_ = nullptr;
    bool sendsShortcutOverride_ = false;
};

}  // namespace velmora
