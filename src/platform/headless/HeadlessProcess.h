#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "platform/headless/HeadlessDesktop.h"
#include "platform/runtime/ProcessWide.h"

namespace velmora {

class HeadlessSession;

/// One host process of a session: its desktop and all values of which each process has its own.
/// Its code runs only while the process is current, that is in a Scope.
class HeadlessProcess {
public:
    /// The session owns it.
    HeadlessProcess(HeadlessSession& session, const HostDescription& host);
    ~HeadlessProcess();
    HeadlessProcess(const HeadlessProcess&) = delete;
    HeadlessProcess& operator=(const HeadlessProcess&) = delete;

    const std::string& name() const { return name_; }
    HeadlessDesktop& desktop() { return *desktop_; }

    /// Makes the process current for the life of the scope. A process that waits further down,
    /// because another one runs inside its wait, cannot become current.
    class Scope {
    public:
        explicit Scope(HeadlessProcess& process);
        ~Scope();
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;

    private:
        HeadlessProcess& process_;
    };

    // These want the process to be current:

    /// Brings the system into the host: runs the load hooks, then has the host finish launching and
    /// become the active application.
    void launch();
    bool isLaunched() const { return launched_; }

    /// The host's main loop, until the user of the session is done.
    void run();

    // This does not:

    /// Does this as soon as the process is current.
    void later(std::function<void()> action);

private:
    friend class HeadlessSession;
    void runPostponed();
    bool isTimerDue() const;

    HeadlessSession& session_;
    std::string name_;
    std::unique_ptr<HeadlessDesktop> desktop_;
    bool launched_ = false;
    std::vector<std::function<void()>> postponed_;
    ProcessImage image_;
};

}  // namespace velmora
