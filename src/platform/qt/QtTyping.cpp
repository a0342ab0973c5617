#include "platform/qt/QtTyping.h"

#include <QGuiApplication>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QPointer>

#include "platform/appkit/NSEvent.h"
#include "platform/foundation/NSLog.h"

namespace velmora {

namespace {

/// The key of one of the platform's virtual key codes that is pressed as such, or 0.
int keyOfCode(std::uint16_t keyCode) {
    switch (keyCode) {
        case 36: return Qt::Key_Return;
        case 48: return Qt::Key_Tab;
        case 49: return Qt::Key_Space;
        default: return 0;
    }
}

void pressKey(const QPointer<QObject>& receiver, int key, const QString& text) {
    QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, text);
    QCoreApplication::sendEvent(receiver, &press);
    if (!receiver) return;
    QKeyEvent release(QEvent::KeyRelease, key, Qt::NoModifier, text);
    QCoreApplication::sendEvent(receiver, &release);
}

}  // namespace

void typeInFocus(const NSEvent& keyDown) {
    const QPointer<QObject> focus = QGuiApplication::focusObject();
    const QString text = QString::fromStdString(keyDown.fields().characters);
    if (!focus) {
        NSTrace("nothing has the focus that could take the text");
        return;
    }
    if (const int key = keyOfCode(keyDown.fields().keyCode)) {
        pressKey(focus, key, key == Qt::Key_Return ? QStringLiteral("\r") : text);
        return;
    }
    if (text.isEmpty()) return;
    QInputMethodEvent insertion;
    insertion.setCommitString(text);
    QCoreApplication::sendEvent(focus, &insertion);
    // What knows no input methods may read the text of a key.
    if (!insertion.isAccepted() && focus) pressKey(focus, Qt::Key_unknown, text);
}

}  // namespace velmora
