#pragma once

#include <QMouseEvent>

#include "platform/qt/base/ModifierKeys.h"
#include "platform/qt/base/QtEvent.h"

namespace velmora {

class QtWindows;

/// Makes the layer's events from those of the toolkit. Every event gets a number of its own, by
/// which its copies are known. To be asked exactly once for each event.
class EventTranslator {
public:
    explicit EventTranslator(QtWindows& windows) : windows_(windows) {}

    /// A press, a release or a motion.
    QtEventRef mouseEvent(QWindow& window, QMouseEvent& event);

    /// A press (told as a shortcut override or as a key press) or a release. Of a modifier key it
    /// becomes a change of the flags.
    QtEventRef keyEvent(QWindow& window, const QKeyEvent& event);

    /// The release of the pressed button, where the pointer is now.
    QtEventRef lostRelease(const QtEvent& press, Qt::MouseButtons stillPressed);

private:
    QtEventRef makeMouseEvent(std::shared_ptr<const QtOriginal> original);

    QtWindows& windows_;
    ModifierKeys modifierKeys_;
    int lastNumber_ = 0;
};

}  // namespace velmora
