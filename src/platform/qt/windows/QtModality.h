#pragma once

class QWidget;
class QWindow;

namespace velmora {

/// Whether a modal dialog keeps the user from the window.
bool isBlockedByModal(const QWindow& window);

/// Whether the window that holds the widget is blocked; one that was never shown is not.
bool isBlockedByModal(const QWidget& widget);

}  // namespace velmora
