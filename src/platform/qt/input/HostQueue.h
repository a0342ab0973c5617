#pragma once

#include <QObject>
#include <QTimer>
#include <deque>

#include "platform/qt/base/QtEvent.h"

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

    /// Whether this is an event that is sent to the host anew, by the queue or by somebody else,
    /// which the hook is to let through. Says so once.
    bool sends(const QEvent* event);

    /// A menu item has run for the key whose shortcut override is being sent: its press is not.
    void keyWasTaken() { keyIsTaken_ = true; }

private:
    void sendNext();
    void sendKey(const QtOriginal& original, const QtKey& key);

    QtPanelKeys& panelKeys_;
    std::deque<std::shared_ptr<const QtOriginal>> events_;
    QTimer timer_;
    bool sendsShortcutOverride_ = false;
    bool keyIsTaken_ = false;
};

}  // namespace velmora
