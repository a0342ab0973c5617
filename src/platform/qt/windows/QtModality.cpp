#include "platform/qt/windows/QtModality.h"

#include <QGuiApplication>
#include <QWidget>
#include <QWindow>

namespace velmora {

namespace {

const QWindow* aboveOf(const QWindow& window) {
    const QWindow* parent = window.parent();
    return parent ? parent : window.transientParent();
}

bool isSameOrBelow(const QWindow& window, const QWindow& upper) {
    return &window == &upper || upper.isAncestorOf(&window, QWindow::IncludeTransients);
}

/// A window-modal dialog blocks the windows from which it was opened and their other dialogs.
bool shareAWindow(const QWindow& window, const QWindow& modal) {
    for (const QWindow* upper = &modal; upper; upper = aboveOf(*upper)) {
        if (isSameOrBelow(window, *upper)) return true;
    }
    return false;
}

bool blocks(const QWindow& modal, const QWindow& window) {
    switch (modal.modality()) {
        case Qt::ApplicationModal: return true;
        case Qt::WindowModal: return shareAWindow(window, modal);
        default: return false;
    }
}

}  // namespace

bool isBlockedByModal(const QWindow& window) {
    // The newest dialog is blocked by none of the older ones.
    const QWindow* newest = QGuiApplication::modalWindow();
    if (!newest || isSameOrBelow(window, *newest)) return false;
    if (blocks(*newest, window)) return true;
    const QWindowList windows = QGuiApplication::topLevelWindows();
    for (const QWindow* modal : windows) {
        if (modal == newest || !modal->isVisible() || isSameOrBelow(window, *modal)) continue;
        if (blocks(*modal, window)) return true;
    }
    return false;
}

bool isBlockedByModal(const QWidget& widget) {
    const QWindow* window = widget.window()->windowHandle();
    return window && isBlockedByModal(*window);
}

}  // namespace velmora
