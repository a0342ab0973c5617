#include "platform/qt/QtPanelKeys.h"

#include <private/qcoreapplication_p.h>
#include <private/qobject_p.h>
#include <QCoreApplication>
#include <QPointer>
#include <QScopedValueRollback>
#include <QWidget>
#include <QWindow>

#include "platform/qt/QtWindows.h"

namespace velmora {

namespace {

bool isOfPanel(const QObject& receiver) {
    const QWidget* widget = nullptr;
    if (receiver.isWidgetType()) {
        widget = static_cast<const QWidget*>(&receiver);
    } else if (receiver.isWindowType()) {
        widget = QtWindows::widgetOf(static_cast<const QWindow&>(receiver));
    }
    // The popups of a panel are windows below it.
    for (; widget; widget = widget->parentWidget()) {
        widget = widget->window();
        if (QtWindows::isOwn(*widget)) return true;
    }
    return false;
}

/// The toolkit's own bridge to assistive tools filters all events, too. What it takes it sends
/// again when a tool has let it pass.
bool assistiveToolTakes(QObject& receiver, QEvent& event) {
    const auto* extra = QObjectPrivate::get(QCoreApplication::instance())->extraData;
    if (!extra) return false;
    const auto filters = extra->eventFilters;
    for (const QPointer<QObject>& filter : filters) {
        if (filter && filter->inherits("QSpiApplicationAdaptor")) {
            return filter->eventFilter(&receiver, &event);
        }
    }
    return false;
}

bool send(QObject& receiver, QEvent& event) {
    return QCoreApplicationPrivate::sendThroughObjectEventFilters(&receiver, &event) ||
           receiver.event(&event);
}

/// A key that a widget leaves goes to what holds it, up to the window.
void sendUpwards(QWidget& receiver, QEvent& event) {
    const bool accepted = event.isAccepted();
    for (QPointer<QWidget> widget = &receiver; widget;) {
        const QPointer<QWidget> upper = widget->isWindow() ? nullptr : widget->parentWidget();
        event.setAccepted(accepted);
        const bool handled = send(*widget, event);
        if (!widget || (handled && event.isAccepted())) return;
        widget = upper;
    }
}

}  // namespace

bool QtPanelKeys::deliver(QObject& receiver, QEvent& event) {
    if (!isOfPanel(receiver)) return false;
    if (receiver.isWindowType() && assistiveToolTakes(receiver, event)) return true;
    Delivery delivery{receiver, event};
    const QScopedValueRollback<Delivery*> delivering(delivery_, &delivery);
    // The toolkit deletes later what is to be only if it knows that an event is being handled. This
    // one tells filters nothing.
    QEvent frame(QEvent::ActivationChange);
    QCoreApplication::sendEvent(this, &frame);
    return delivery.done;
}

bool QtPanelKeys::event(QEvent* event) {
    Delivery* delivery = std::exchange(delivery_, nullptr);
    if (!delivery) return QObject::event(event);
    delivery->done = true;
    QEvent& key = delivery->event;
    if (delivery->receiver.isWidgetType() && key.type() != QEvent::InputMethod) {
        sendUpwards(static_cast<QWidget&>(delivery->receiver), key);
        return true;
    }
    send(delivery->receiver, key);
    // Else the toolkit would look for a shortcut.
    if (key.type() == QEvent::ShortcutOverride) key.accept();
    return true;
}

}  // namespace velmora
