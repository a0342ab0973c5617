#include "platform/qt/panels/QtPanelKeys.h"

#include <private/qcoreapplication_p.h>
#include <private/qobject_p.h>
#include <QApplication>
#include <QKeyEvent>
#include <QPointer>
#include <QScopedValueRollback>
#include <QWidget>
#include <QWindow>

#include "platform/qt/panels/QtPanel.h"
#include "platform/qt/windows/QtWindows.h"

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

/// The panel whose window it is, or null.
QtPanel* panelOf(const QObject& receiver) {
    if (!receiver.isWindowType()) return nullptr;
    const QWidget* widget = QtWindows::widgetOf(static_cast<const QWindow&>(receiver));
    const bool isOwn = widget && QtWindows::isOwn(*widget->window());
    const auto* dialog = isOwn ? dynamic_cast<const QtPanelDialog*>(widget->window()) : nullptr;
    return dialog ? dialog->panel() : nullptr;
}

/// As the platform does it: the views of the key window come before the one with the keyboard. An
/// open menu has its keys.
bool offerToViews(const QObject& receiver, QEvent& event) {
    if (event.type() != QEvent::KeyPress || QApplication::activePopupWidget()) return false;
    QtPanel* panel = panelOf(receiver);
    if (!panel || !panel->viewsTake(static_cast<QKeyEvent&>(event))) return false;
    event.accept();
    return true;
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
    QObject& receiver = delivery->receiver;
    const bool isFiltered = QCoreApplicationPrivate::sendThroughObjectEventFilters(&receiver, &key);
    if (!isFiltered && !offerToViews(receiver, key)) receiver.event(&key);
    // Else the toolkit would look for a shortcut.
    if (key.type() == QEvent::ShortcutOverride) key.accept();
    return true;
}

}  // namespace velmora
