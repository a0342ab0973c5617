#include "platform/appkit/NSApplication.h"

#include <algorithm>

#include "platform/appkit/ModalWindow.h"
#include "platform/foundation/NSNotificationCenter.h"
#include "platform/port/Desktop.h"
#include "platform/runtime/Class.h"

namespace velmora {

namespace {

ProcessWide<std::shared_ptr<NSApplication>> application;

Selector sendEventSelector() {
    static const Selector selector = Selector::named("sendEvent:");
    return selector;
}

Selector nextEventSelector() {
    static const Selector selector =
        Selector::named("nextEventMatchingMask:untilDate:inMode:dequeue:");
    return selector;
}

constexpr bool matches(std::uint32_t mask, std::uint32_t type) {
    return mask == NSAnyEventMask || (type < 32 && ((mask >> type) & 1U) != 0);
}

/// Counts a wait for as long as it lasts; a host's exception may end it too.
class Fetching {
public:
    explicit Fetching(int& count) : count_(count) { ++count_; }
    ~Fetching() { --count_; }
    Fetching(const Fetching&) = delete;
    Fetching& operator=(const Fetching&) = delete;

private:
    int& count_;
};

}  // namespace

Class& NSApplication::classObject() {
    static auto* object = &(new Class("NSApplication", &NSObject::classObject()))
                               ->method<&NSApplication::sendEventImplementation>("sendEvent:")
                               .method<&NSApplication::nextEventImplementation>(
                                   "nextEventMatchingMask:untilDate:inMode:dequeue:");
    return *object;
}

NSApplication& NSApplication::sharedApplication() {
    std::shared_ptr<NSApplication>& shared = application;
    if (!shared) shared = std::make_shared<NSApplication>();
    return *shared;
}

void NSApplication::sendEvent(const NSEventRef& event) {
    message<void(const NSEventRef&)>(*this, sendEventSelector(), event);
}

void NSApplication::sendEventImplementation(const NSEventRef& event) {
    if (event) desktop().dispatchEvent(event);
}

NSEventRef NSApplication::nextEventMatchingMask_untilDate_inMode_dequeue(std::uint32_t mask,
                                                                         Time until,
                                                                         RunLoopMode mode,
                                                                         bool dequeue) {
    return message<NSEventRef(std::uint32_t, Time, RunLoopMode, bool)>(*this, nextEventSelector(),
                                                                       mask, until, mode, dequeue);
}

NSEventRef NSApplication::nextEventImplementation(std::uint32_t mask, Time until, RunLoopMode mode,
                                                  bool dequeue) {
    if (until == distantPast) return takeMatching(mask, dequeue);
    Desktop& desk = desktop();
    NSRunLoop& loop = NSRunLoop::currentRunLoop();
    while (true) {
        const Time now = desk.now();
        loop.fireDueTimers(mode, now);
        if (NSEventRef event = takeMatching(mask, dequeue)) return event;
        if (now >= until) return nullptr;
        const std::optional<Time> timer = loop.nextFireDate(mode);
        const Fetching fetching(fetching_);
        desk.wait(timer ? std::min(*timer, until) : until);
    }
}

NSEventRef NSApplication::takeMatching(std::uint32_t mask, bool dequeue) {
    const auto found = std::find_if(queue_.begin(), queue_.end(), [mask](const NSEventRef& event) {
        return matches(mask, event->type());
    });
    if (found == queue_.end()) return nullptr;
    NSEventRef event = *found;
    if (dequeue) {
        queue_.erase(found);
        currentEvent_ = event;
    }
    return event;
}

NSMenuRef NSApplication::mainMenu() {
    return desktop().mainMenu();
}

NSWindowRef NSApplication::mainWindow() {
    return desktop().mainWindow();
}

NSWindowRef NSApplication::keyWindow() {
    return desktop().keyWindow();
}

std::vector<NSWindowRef> NSApplication::orderedWindows() {
    return desktop().orderedWindows();
}

NSWindowRef NSApplication::windowWithNumber(int number) {
    if (number == 0) return nullptr;
    for (const NSWindowRef& window : orderedWindows()) {
        if (window->windowNumber() == number) return window;
    }
    return nullptr;
}

NSWindowRef NSApplication::makeWindowsPerform_inOrder(Selector selector, bool /*inOrder*/) {
    for (const NSWindowRef& window : orderedWindows()) {
        if (window->respondsToSelector(selector) && message<NSWindowRef()>(*window, selector)) {
            return window;
        }
    }
    return nullptr;
}

bool NSApplication::sendAction_to_from(Selector action, const Id& target, const Id& sender) {
    NSObject* receiver = target ? target.get() : this;
    if (!receiver->respondsToSelector(action)) return false;
    message<Action>(*receiver, action, sender);
    return true;
}

int NSApplication::runModalForWindow(ModalWindow& window) {
    const auto kept = window.shared_from_this();
    NSRunLoop& loop = NSRunLoop::currentRunLoop();
    const RunLoopMode outer = loop.mode();
    sessions_.push_back({&window});
    loop.setMode(NSModalPanelRunLoopMode);
    window.runModal();
    loop.setMode(outer);
    const int code = sessions_.back().code;
    sessions_.pop_back();
    return code;
}

void NSApplication::stopModalWithCode(int code) {
    if (sessions_.empty()) return;
    sessions_.back().code = code;
    sessions_.back().window->endModal();
}

void NSApplication::postEvent(NSEventRef event) {
    queue_.push_back(std::move(event));
}

void NSApplication::postEventFirst(NSEventRef event) {
    queue_.push_front(std::move(event));
}

void NSApplication::deliverEvents() {
    while (NSEventRef event = nextEventMatchingMask_untilDate_inMode_dequeue(
               NSAnyEventMask, distantPast, NSDefaultRunLoopMode, true)) {
        sendEvent(event);
    }
}

void NSApplication::fireTimers() {
    NSRunLoop& loop = NSRunLoop::currentRunLoop();
    loop.fireDueTimers(loop.mode(), desktop().now());
}

void NSApplication::finishLaunching() {
    post(NSApplicationDidFinishLaunchingNotification);
}

void NSApplication::didBecomeActive() {
    post(NSApplicationDidBecomeActiveNotification);
}

void NSApplication::willResignActive() {
    post(NSApplicationWillResignActiveNotification);
}

void NSApplication::post(std::string_view notification) {
    NSNotificationCenter::defaultCenter().postNotification({notification, this, std::nullopt});
}

}  // namespace velmora
