#pragma once

#include <QEvent>
#include <QObject>

namespace velmora {

/// For every event, before its receiver has it. On X the toolkit keeps the window that a button was
/// pressed in until the button's release. It forgets a window that is hidden, but a press that the
/// server had sent before, to a menu that is closing, makes it keep one that is about to be
/// deleted; hiding any window then ends the host. A window that goes is hidden once more, which has
/// the toolkit forget it.
void forgetPressedWindow(QObject& receiver, QEvent& event);

}  // namespace velmora
