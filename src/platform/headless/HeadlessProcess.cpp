#include "platform/headless/HeadlessProcess.h"

#include "platform/appkit/NSApplication.h"
#include "platform/headless/HeadlessSession.h"
#include "platform/runtime/Class.h"

namespace velmora {

HeadlessProcess::Scope::Scope(HeadlessProcess& process) : process_(process) {
    process_.image_.exchange();
    process_.session_.entered(process_);
    process_.runPostponed();
}

HeadlessProcess::Scope::~Scope() {
    HeadlessSession& session = process_.session_;
    session.left(process_);
    process_.image_.exchange();
    if (session.current()) session.current()->runPostponed();
}

HeadlessProcess::HeadlessProcess(HeadlessSession& session, const HostDescription& host)
    : session_(session), name_(host.processName) {
    const Scope scope(*this);
    desktop_ = std::make_unique<HeadlessDesktop>(session, host);
    setDesktop(desktop_.get());
}

HeadlessProcess::~HeadlessProcess() {
    session_.clock().setWakeUp(this, std::nullopt);
}

void HeadlessProcess::launch() {
    launched_ = true;
    LoadHook::runAll();
    NSApp().finishLaunching();
    session_.activate(*this);
}

void HeadlessProcess::run() {
    InputQueue& input = session_.input();
    NSApplication& app = NSApp();
    ++session_.mainLoops_;
    while (const std::optional<Time> next = input.next()) {
        const NSEventRef event = app.nextEventMatchingMask_untilDate_inMode_dequeue(
            NSAnyEventMask, *next, NSDefaultRunLoopMode, true);
        if (event) {
            app.sendEvent(event);
            continue;
        }
        // A timer that fired meanwhile may have run a loop, which played what was next.
        const std::optional<Time> due = input.next();
        if (due && *due <= session_.clock().now()) input.playNext();
    }
    // What the last of it has left to do.
    while (app.hasEvents() || isTimerDue()) {
        app.fireTimers();
        app.deliverEvents();
    }
    --session_.mainLoops_;
}

bool HeadlessProcess::isTimerDue() const {
    const NSRunLoop& loop = NSRunLoop::currentRunLoop();
    const std::optional<Time> next = loop.nextFireDate(loop.mode());
    return next && *next <= session_.clock().now();
}

void HeadlessProcess::later(std::function<void()> action) {
    postponed_.push_back(std::move(action));
    if (session_.current() == this) runPostponed();
}

void HeadlessProcess::runPostponed() {
    const std::vector<std::function<void()>> actions = std::exchange(postponed_, {});
    for (const auto& action : actions) action();
}

}  // namespace velmora
