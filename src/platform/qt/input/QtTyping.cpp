#include "platform/qt/input/QtTyping.h"

#include <QGuiApplication>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QPointer>
#include <QWindow>

#include "platform/qt/base/QtGuard.h"
#include "platform/qt/windows/QtWindows.h"
#include "platform/runtime/NSLog.h"

namespace velmora {

namespace {

/// How long nothing may have the focus, in ms: menus that close keep it for a while.
constexpr int longestWait = 300;

/// The key of one of the platform's virtual key codes that is pressed as such, or 0.
int keyOfCode(std::uint16_t keyCode) {
    switch (keyCode) {
        case 36: return Qt::Key_Return;
        case 48: return Qt::Key_Tab;
        case 49: return Qt::Key_Space;
        default: return 0;
    }
}

/// What has the focus in a window that is no menu, or null.
QObject* focusedObject() {
    const QWindow* window = QGuiApplication::focusWindow();
    if (!window || !window->isVisible() || window->type() == Qt::Popup) return nullptr;
    return window->focusObject();
}

void pressKey(const QPointer<QObject>& receiver, int key, const QString& text) {
    QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, text);
    QCoreApplication::sendEvent(receiver, &press);
    if (!receiver) return;
    QKeyEvent release(QEvent::KeyRelease, key, Qt::NoModifier, text);
    QCoreApplication::sendEvent(receiver, &release);
}

void typeInto(const QPointer<QObject>& focus, const NSEvent& keyDown) {
    const QString text = QString::fromStdString(keyDown.fields().characters);
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

}  // namespace

QtTyping::QtTyping(QtWindows& windows) : windows_(windows) {
    limit_.setSingleShot(true);
    limit_.setInterval(longestWait);
    QObject::connect(&limit_, &QTimer::timeout, &context_, [this] { giveUp(); });
    QObject::connect(
        qGuiApp, &QGuiApplication::focusObjectChanged, &context_,
        [this] {
            if (limit_.isActive()) deliver();
        },
        Qt::QueuedConnection);
}

void QtTyping::type(const NSEventRef& keyDown) {
    waiting_.push_back(keyDown);
    const auto whenSettled = [this] { windows_.whenKeyIsSettled([this] { deliver(); }); };
    QMetaObject::invokeMethod(
        &context_, [whenSettled] { guarded("Typing", whenSettled); }, Qt::QueuedConnection);
}

void QtTyping::deliver() {
    guarded("Typing", [this] {
        while (!waiting_.empty()) {
            const QPointer<QObject> focus = focusedObject();
            if (!focus) {
                if (!limit_.isActive()) limit_.start();
                return;
            }
            limit_.stop();
            const NSEventRef keyDown = waiting_.front();
            waiting_.pop_front();
            typeInto(focus, *keyDown);
        }
    });
}

void QtTyping::giveUp() {
    waiting_.clear();
    guarded("Typing", [] { NSLog("Nothing has the focus that could take the text"); });
}

}  // namespace velmora
