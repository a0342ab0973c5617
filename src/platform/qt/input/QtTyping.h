#pragma once

#include <QObject>
#include <QTimer>
#include <deque>

#include "platform/appkit/NSEvent.h"

namespace velmora {

class QtWindows;

/// Types what key-downs of ours say into whatever has the focus: all characters of one as one
/// insertion, as an input method would; a Return, Tab or Space by its key code as a press and a
/// release of that key. Their key-ups have nothing left to do.
class QtTyping {
public:
    explicit QtTyping(QtWindows& windows);

    /// In a later pass of the loop, in the order of the calls and of the commands that run
    /// meanwhile: a menu or a panel from which the text was chosen first gives the focus back.
    void type(const NSEventRef& keyDown);

private:
    void deliver();
    void giveUp();

    QtWindows& windows_;
    QObject context_;
    std::deque<NSEventRef> waiting_;
    /// Runs while nothing has the focus.
    QTimer limit_;
};

}  // namespace velmora
