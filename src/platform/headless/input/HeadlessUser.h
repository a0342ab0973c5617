#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/appkit/NSEvent.h"
#include "platform/headless/input/InputNames.h"
#include "platform/port/CGDirectDisplay.h"
#include "platform/port/NSGeometry.h"
#include "platform/port/Time.h"

namespace velmora {

class InputQueue;
class NSMenu;
class NSWindow;
class VirtualClock;

/// The hands of a simulated user: a pointer that moves as time passes, buttons and keys. What they
/// do is posted to the process that is current at that moment.
class HeadlessUser {
public:
    HeadlessUser(const VirtualClock& clock, InputQueue& queue) : clock_(clock), queue_(queue) {}

    /// Where the pointer is at this moment, also half way of a motion. Screen coordinates.
    NSPoint location() const { return pinned_ ? *pinned_ : hand(); }

    /// Where the hand has moved the pointer, or would have if it moved it.
    NSPoint hand() const;

    /// Whether the hand moves the pointer. Once it does again, it goes on from where the pointer
    /// is.
    void associate(bool connected);
    /// As Desktop::lastMouseDelta.
    CGMouseDelta takeDelta() { return std::exchange(delta_, {}); }

    /// Begins to move the pointer there in a straight line, posting motion on the way. The queue's
    /// next action is not put off: that is the caller's.
    void move(NSPoint to, Time duration);

    /// How much time lies between two events of a motion.
    void setMotionInterval(Time interval) { motionInterval_ = interval; }

    /// A button that is held cannot be pressed again, one that is not cannot be released: false.
    bool press(int button);
    bool release(int button);

    /// Presses and releases a button that is not held, wherever the pointer is, over the window.
    void click(int button, const std::shared_ptr<NSWindow>& window);

    /// As above, for the modifier key with this flag.
    bool hold(std::uint32_t flag);
    bool letGo(std::uint32_t flag);

    void keyDown(const Key& key) { postKey(NSKeyDown, key); }
    void keyUp(const Key& key) { postKey(NSKeyUp, key); }

    /// What a click into an open menu leaves behind: the menu has fetched it itself, and it belongs
    /// to no window.
    static void clickInMenu();

    /// The context menu that opens where the pointer is; null where none does.
    std::shared_ptr<NSMenu> contextMenu() const;

    void scroll(float deltaX, float deltaY);

    /// Releases all buttons and keys; false when none was held.
    bool letEverythingGo();

    std::uint32_t modifierFlags() const { return flags_; }

private:
    struct HeldButton {
        int button;
        std::weak_ptr<NSWindow> window;
    };
    NSEvent::Fields fields(std::uint32_t type) const;
    void postMouse(std::uint32_t type, int button, const std::shared_ptr<NSWindow>& window);
    void postMotion();
    void postKey(std::uint32_t type, const Key& key);
    void postFlags();
    void sampleMotion(int motion);

    const VirtualClock& clock_;
    InputQueue& queue_;
    Time motionInterval_ = std::chrono::milliseconds(8);
    NSPoint from_;
    NSPoint to_;
    Time begin_{};
    Time end_{};
    NSPoint lastPosted_;
    std::optional<NSPoint> pinned_;
    CGMouseDelta delta_;
    /// Tells the samples of a motion from those of one that replaced it.
    int motion_ = 0;
    std::vector<HeldButton> buttons_;
    std::uint32_t flags_ = 0;
    int eventNumber_ = 0;
};

}  // namespace velmora
