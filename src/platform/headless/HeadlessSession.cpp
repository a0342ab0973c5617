#include "platform/headless/HeadlessSession.h"

#include <algorithm>
#include <utility>

#include "platform/appkit/NSApplication.h"

namespace velmora {

namespace {

/// So long a loop may go on after everything was done to end it.
constexpr Time longestIdle = std::chrono::minutes(1);

constexpr const char* settingsFolder = "/Library/Application Support/Velmora";

}  // namespace

HeadlessSession::HeadlessSession(std::string resourceDirectory)
    : home_("/home/user"), resourceDirectory_(std::move(resourceDirectory)) {
    files_.memory().createDirectories(home_);
    files_.memory().createDirectories("/tmp");
}

HeadlessSession::~HeadlessSession() {
    // The last one made goes first, as scopes do.
    while (!processes_.empty()) processes_.pop_back();
}

std::string HeadlessSession::settingsFile(const std::string& name) const {
    return home_ + settingsFolder + '/' + name;
}

HeadlessProcess& HeadlessSession::addProcess(const HostDescription& host) {
    processes_.push_back(std::make_unique<HeadlessProcess>(*this, host));
    return *processes_.back();
}

HeadlessProcess* HeadlessSession::processNamed(const std::string& name) const {
    const auto found = std::find_if(processes_.begin(), processes_.end(),
                                    [&](const auto& p) { return p->name() == name; });
    return found == processes_.end() ? nullptr : found->get();
}

void HeadlessSession::removeProcess(const HeadlessProcess& process) {
    if (active_ == &process) active_ = nullptr;
    std::erase_if(processes_, [&](const auto& p) { return p.get() == &process; });
}

bool HeadlessSession::isRunning(const HeadlessProcess& process) const {
    return std::find(running_.begin(), running_.end(), &process) != running_.end();
}

void HeadlessSession::entered(HeadlessProcess& process) {
    running_.push_back(&process);
    // Its own loops look after its timers.
    clock_.setWakeUp(&process, std::nullopt);
}

void HeadlessSession::left(HeadlessProcess& process) {
    running_.pop_back();
    const NSRunLoop& loop = NSRunLoop::currentRunLoop();
    clock_.setWakeUp(&process, loop.nextFireDate(loop.mode()));
}

void HeadlessSession::activate(HeadlessProcess& process) {
    if (active_ == &process) return;
    resignActive();
    active_ = &process;
    process.later([&process] {
        process.desktop().setActive(true);
        NSApp().didBecomeActive();
    });
}

void HeadlessSession::resignActive() {
    if (!active_) return;
    active_->later([process = active_] {
        NSApp().willResignActive();
        process->desktop().setActive(false);
    });
    active_ = nullptr;
}

void HeadlessSession::advanceTo(Time moment) {
    while (const auto wakeUp = clock_.earliestWakeUp()) {
        if (wakeUp->at > moment) break;
        clock_.advanceTo(wakeUp->at);
        for (const auto& process : processes_) {
            if (process.get() != wakeUp->sleeper) continue;
            const HeadlessProcess::Scope scope(*process);
            NSApp().fireTimers();
        }
    }
    clock_.advanceTo(moment);
}

void HeadlessSession::wait(Time deadline) {
    if (const std::optional<Time> next = input_.next()) {
        escapeTyped_ = false;
        idleSince_.reset();
        if (*next < deadline) {
            advanceTo(*next);
            input_.playNext();
        } else {
            advanceTo(deadline);
        }
    } else if (!endLoops()) {
        if (!idleSince_) idleSince_ = clock_.now();
        if (deadline > *idleSince_ + longestIdle) {
            throw Endless("a loop goes on for ever when nothing more is to come");
        }
        advanceTo(deadline);
    }
}

bool HeadlessSession::endLoops() {
    if (mainLoops_ == 0) return false;
    const char* done = "lets go of everything";
    if (!user_.letEverythingGo()) {
        if (!std::exchange(escapeTyped_, true)) {
            const Key escape = *keyNamed("escape");
            user_.keyDown(escape);
            user_.keyUp(escape);
            done = "types escape";
        } else if (current()->desktop().closeModalPanel()) {
            done = "closes the panel";
        } else {
            return false;
        }
    }
    transcript_.add(clock_.now(), Transcript::Kind::note, {},
                    std::string("nothing more is to come; ") + done);
    return true;
}

}  // namespace velmora
