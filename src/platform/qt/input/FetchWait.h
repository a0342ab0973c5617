#pragma once

#include "platform/port/Time.h"

class QEventLoop;

namespace velmora {

/// Lets the host go on for a while from inside an event fetch: a loop in the host's loop.
class FetchWait {
public:
    /// Waits until the deadline, or until wake. False when the host is ending and nobody may keep
    /// it: then it returns at once.
    bool wait(Time deadline);

    /// Ends the wait that was begun last.
    void wake();

    /// Whether a wait runs, and no further loop inside it: a dialog, say, that the host opens
    /// meanwhile and that needs all input for itself.
    bool isWaiting() const;

private:
    /// The waits nest when an event that was passed on brings up another.
    struct Frame {
        QEventLoop* loop;
        /// How many loops run on this thread while this wait's is the innermost.
        int level;
        bool woken = false;
    };
    Frame* innermost_ = nullptr;
};

/// The desktop's clock.
Time steadyNow();

}  // namespace velmora
