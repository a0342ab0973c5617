#pragma once

#include <QEvent>
#include <QPointF>
#include <QPointer>
#include <QString>
#include <QWindow>
#include <memory>
#include <variant>

#include "platform/appkit/NSEvent.h"

class QInputDevice;

namespace velmora {

/// What the toolkit said of the mouse.
struct QtMouse {
    /// MouseButtonPress, MouseButtonRelease or MouseMove.
    QEvent::Type type = QEvent::None;
    QPointF local;
    QPointF global;
    Qt::MouseButton button = Qt::NoButton;
    Qt::MouseButtons buttons = Qt::NoButton;
    Qt::MouseEventSource source = Qt::MouseEventNotSynthesized;
    /// The press is the second of a double click: the toolkit sends a double-click event next,
    /// which is no event of its own here.
    bool opensDoubleClick = false;
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    QPointer<const QInputDevice> device;
#endif
};

/// What the toolkit said of a key.
struct QtKey {
    /// KeyPress or KeyRelease.
    QEvent::Type type = QEvent::None;
    int key = 0;
    quint32 scanCode = 0;
    quint32 virtualKey = 0;
    quint32 nativeModifiers = 0;
    QString text;
    bool autoRepeat = false;
    int count = 1;
};

/// All that it takes to hand an input event to the host anew.
struct QtOriginal {
    /// Null once the window is gone.
    QPointer<QWindow> window;
    Qt::KeyboardModifiers modifiers;
    /// In milliseconds, by the window system's clock.
    quint64 timestamp = 0;
    std::variant<QtMouse, QtKey> what;

    const QtMouse* mouse() const { return std::get_if<QtMouse>(&what); }
    const QtKey* key() const { return std::get_if<QtKey>(&what); }
};

/// An input event of the host's toolkit.
class QtEvent final : public NSEvent {
public:
    QtEvent(Fields fields, std::shared_ptr<const QtOriginal> original)
        : NSEvent(std::move(fields)), original_(std::move(original)) {}

    NSEventRef copy() const override { return std::make_shared<QtEvent>(fields(), original_); }

    const QtOriginal& original() const { return *original_; }
    const std::shared_ptr<const QtOriginal>& sharedOriginal() const { return original_; }

    /// A copy is the same event. The numbers are distinct among the events of one process.
    bool isSameEvent(const QtEvent& other) const { return eventNumber() == other.eventNumber(); }

private:
    std::shared_ptr<const QtOriginal> original_;
};

using QtEventRef = std::shared_ptr<QtEvent>;

}  // namespace velmora
