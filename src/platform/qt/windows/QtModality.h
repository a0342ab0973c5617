#pragma once

class QWidget;
class QWindow;

namespace velmora {

/// Whether a modal dialog keeps the user from the window.
bool isBlockedByModal(const QWindow& window);

/// The same for the window that holds the widget; one that was never shown is not blocked.
bool isBlockedByModal(const QWidget& widget);

}  // namespace velmora
