#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <vector>

#include "platform/appkit/NSEvent.h"
#include "platform/appkit/NSMenu.h"
#include "platform/appkit/NSWindow.h"
#include "platform/foundation/NSRunLoop.h"
#include "platform/port/Time.h"
#include "platform/runtime/NSObject.h"

namespace velmora {

class ModalWindow;

/// The code of a modal session that was stopped without one.
inline constexpr int NSRunStoppedResponse = -1000;

/// The host application: its event queue, its menus and its windows. There is one a process. Its
/// event dispatch and its event fetch are messages whose methods can be exchanged.
class NSApplication final : public NSObject {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }
    static NSApplication& sharedApplication();

    // For the system

    /// Dispatches the event: the message `sendEvent:`, whose own method hands it to the host.
    void sendEvent(const NSEventRef& event);

    /// The next event of a type in the mask (bit number = type), or null when none came before the
    /// deadline. Runs the due timers of the mode first and while it waits, unless the deadline is
    /// distantPast. Without dequeuing, the event stays in the queue. The message
    /// `nextEventMatchingMask:untilDate:inMode:dequeue:`.
    NSEventRef nextEventMatchingMask_untilDate_inMode_dequeue(std::uint32_t mask, Time until,
                                                              RunLoopMode mode, bool dequeue);

    /// The event that was fetched last, or for which a desktop does something only now.
    const NSEventRef& currentEvent() const { return currentEvent_; }

    NSMenuRef mainMenu();
    NSWindowRef keyWindow();
    NSWindowRef mainWindow();
    /// The application's visible windows, front to back.
    std::vector<NSWindowRef> orderedWindows();

    /// The visible window with that number, or null; 0 is no window's.
    NSWindowRef windowWithNumber(int number);

    /// Sends each window the message (`NSWindowRef()`), front to back or in no order, and returns
    /// the first window for which the result is not null.
    NSWindowRef makeWindowsPerform_inOrder(Selector selector, bool inOrder);

    /// Sends the action to the target; without one to the application itself. False when the
    /// receiver does not respond.
    bool sendAction_to_from(Selector action, const Id& target, const Id& sender);

    /// Runs the window as the only window that takes input, in the modal run-loop mode, until the
    /// session is stopped or the window closed. The code with which it was stopped; stopModal and a
    /// closed window give NSRunStoppedResponse. Sessions may nest.
    int runModalForWindow(ModalWindow& window);
    void stopModal() { stopModalWithCode(NSRunStoppedResponse); }
    /// Stops the innermost session; without one it does nothing.
    void stopModalWithCode(int code);

    // For desktops

    /// Puts an event at the end of the queue.
    void postEvent(NSEventRef event);

    /// Puts it before all that wait, as having come before them.
    void postEventFirst(NSEventRef event);

    /// For work that was put off while the event was dispatched.
    void setCurrentEvent(NSEventRef event) { currentEvent_ = std::move(event); }

    /// Whether events wait in the queue.
    bool hasEvents() const { return !queue_.empty(); }

    /// Whether somebody is inside a fetch and waits: what is posted then is fetched there.
    bool isFetching() const { return fetching_ > 0; }

    /// Fetches and dispatches all events in the queue: a pass of the application's main loop, for
    /// a desktop whose host has a loop of its own.
    void deliverEvents();

    /// Fires the due timers of the run loop's mode.
    void fireTimers();

    /// The application has finished launching, becomes active, is about to be no longer.
    void finishLaunching();
    void didBecomeActive();
    void willResignActive();

private:
    void sendEventImplementation(const NSEventRef& event);
    NSEventRef nextEventImplementation(std::uint32_t mask, Time until, RunLoopMode mode,
                                       bool dequeue);
    NSEventRef takeMatching(std::uint32_t mask, bool dequeue);
    void post(std::string_view notification);

    struct ModalSession {
        ModalWindow* window;
        int code = NSRunStoppedResponse;
    };

    std::deque<NSEventRef> queue_;
    std::vector<ModalSession> sessions_;
    NSEventRef currentEvent_;
    int fetching_ = 0;
};

/// The application object of this process.
inline NSApplication& NSApp() {
    return NSApplication::sharedApplication();
}

}  // namespace velmora
