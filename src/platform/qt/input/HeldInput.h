#pragma once

#include <cstdint>
#include <vector>

#include "platform/port/Time.h"
#include "platform/qt/base/QtEvent.h"
#include "platform/qt/input/X11Pointer.h"

namespace velmora {

class EventTranslator;

/// Which buttons and modifier keys are down, as far as events have told; and the releases that
/// never come, because the window was destroyed, the pointer grabbed by somebody else, the session
/// locked.
class HeldInput {
public:
    explicit HeldInput(EventTranslator& translator) : translator_(translator) {}

    /// For each event of the host's windows. Returns the releases that must have come before it.
    std::vector<QtEventRef> note(const QtEventRef& event);

    /// To be asked again and again while somebody waits for a release: what has been released
    /// without an event. Asks the display seldom enough to be cheap, and says nothing before the
    /// host has had the time to take up an event that is on its way.
    std::vector<NSEventRef> released(Time now);

    bool isEmpty() const { return presses_.empty() && flags_ == 0; }

    /// How long to wait at most before `released` is asked again.
    static constexpr Time lookInterval = std::chrono::milliseconds(100);

private:
    Qt::MouseButtons pressedButtons() const;
    std::vector<QtEventRef> takeReleases(Qt::MouseButtons pressed);

    EventTranslator& translator_;
    X11Pointer pointer_;
    std::vector<QtEventRef> presses_;
    std::uint32_t flags_ = 0;

    Time lastLook_{};
    int passesSinceLook_ = 0;
    Qt::MouseButtons suspectedButtons_;
    std::uint32_t suspectedFlags_ = 0;
};

}  // namespace velmora
