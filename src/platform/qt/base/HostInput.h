#pragma once

#include <QEvent>
#include <QObject>

#include "platform/qt/base/QtEvent.h"

namespace velmora {

/// Hands input to the host that has not come from the window system just now: each event is made
/// anew, looks like one of the window system's and takes its way, at once. The hook lets it
/// through.
class HostInput {
public:
    /// To the window. A release also gets to the toolkit when the window is gone, which would take
    /// the button for pressed.
    static void sendMouse(const QtOriginal& original);

    static void send(QObject& receiver, QEvent& event);

    /// As what comes from the window system is marked.
    static void markSpontaneous(QEvent& event);

    /// Whether this is the event that is being sent. Says so once.
    static bool isSending(const QEvent* event);

private:
    static void sendMouseEvent(QObject& receiver, const QtOriginal& original, const QtMouse& mouse,
                               QEvent::Type type);
};

}  // namespace velmora
