#pragma once

#include <QEvent>
#include <QObject>

namespace velmora {

/// Keys that are typed into a panel of ours. Its widgets have them and nobody else: neither filters
/// of the host that see all events of the application, nor shortcuts that are in force in all of
/// its windows. The panels have none of the toolkit's shortcuts themselves, and no letters to mark.
class QtPanelKeys final : public QObject {
public:
    static bool isKey(const QEvent& event) {
        switch (event.type()) {
            case QEvent::ShortcutOverride:
            case QEvent::KeyPress:
            case QEvent::KeyRelease:
            case QEvent::InputMethod: return true;
            default: return false;
        }
    }

    /// Hands an event that is for a panel's window, or for a widget in it or in a popup of it, to
    /// the widget in the toolkit's own way. True when it was one; the event is done with.
    bool deliver(QObject& receiver, QEvent& event);

protected:
    bool event(QEvent* event) override;

private:
    struct Delivery {
        QObject& receiver;
        QEvent& event;
        bool done = false;
    };
    Delivery* delivery_ = nullptr;
};

}  // namespace velmora
