#include "platform/qt/base/LogSink.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <csignal>
#include <ctime>
#include <utility>

namespace velmora {

namespace {

constexpr int ownFlags = O_WRONLY | O_APPEND | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;

/// Keeps this thread from the signals that a write can raise: of a pipe without a reader, of a file
/// that has reached the process's limit, of a terminal that stops who writes in the background.
/// What the host does with them stays as it is, and so does one that was pending before.
class WithoutSignals {
public:
    WithoutSignals() : error_(errno) {
        ::sigemptyset(&signals_);
        for (const int number : {SIGPIPE, SIGXFSZ, SIGTTOU}) ::sigaddset(&signals_, number);
        ::sigpending(&pending_);
        ::pthread_sigmask(SIG_BLOCK, &signals_, &before_);
    }

    ~WithoutSignals() {
        for (const int number : {SIGPIPE, SIGXFSZ}) {
            if (::sigismember(&pending_, number)) continue;
            sigset_t one;
            ::sigemptyset(&one);
            ::sigaddset(&one, number);
            const timespec atOnce{};
            ::sigtimedwait(&one, nullptr, &atOnce);
        }
        ::pthread_sigmask(SIG_SETMASK, &before_, nullptr);
        errno = error_;
    }

    WithoutSignals(const WithoutSignals&) = delete;
    WithoutSignals& operator=(const WithoutSignals&) = delete;

private:
    int error_;
    sigset_t signals_;
    sigset_t pending_;
    sigset_t before_;
};

ssize_t writeSome(int descriptor, std::string_view bytes) {
    ssize_t written = -1;
    do {
        written = ::write(descriptor, bytes.data(), bytes.size());
    } while (written < 0 && errno == EINTR);
    return written;
}

/// To a descriptor whose open file the host, and whoever started it, go on using as it is.
ssize_t writeToShared(int descriptor, std::string_view bytes) {
    struct stat kind {};
    if (::fstat(descriptor, &kind) != 0) return -1;
    if (S_ISREG(kind.st_mode) || S_ISBLK(kind.st_mode)) return writeSome(descriptor, bytes);
    if (S_ISSOCK(kind.st_mode)) {
        return ::send(descriptor, bytes.data(), bytes.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
    }
    // Opens the pipe or terminal a second time, in a way that does not wait. It is not kept open:
    // its reader waits until everybody has closed it.
    const std::string name = "/proc/self/fd/" + std::to_string(descriptor);
    const int again = ::open(name.c_str(), ownFlags);
    if (again >= 0) {
        const ssize_t written = writeSome(again, bytes);
        ::close(again);
        return written;
    }
    // Where that is not allowed: so much fits into a pipe that is ready at all, unless somebody
    // else writes at this very moment.
    pollfd ready{descriptor, POLLOUT, 0};
    if (::poll(&ready, 1, 0) != 1 || (ready.revents & POLLOUT) == 0) return -1;
    return writeSome(descriptor, bytes.substr(0, PIPE_BUF));
}

}  // namespace

LogSink::LogSink(std::string path) : path_(std::move(path)) {
    const WithoutSignals quiet;
    // It may tell what the user does in the host.
    constexpr mode_t ownerOnly = 0600;
    descriptor_ = ::open(path_.c_str(), ownFlags | O_CREAT, ownerOnly);
}

LogSink::~LogSink() {
    if (!path_.empty() && descriptor_ >= 0) ::close(descriptor_);
}

void LogSink::write(std::string_view prefix, std::string_view text) {
    const WithoutSignals quiet;
    if (lost_ > 0) {
        const std::string notice =
            std::to_string(lost_) + (lost_ == 1 ? " line was lost" : " lines were lost");
        if (writeLine(prefix, notice)) lost_ = 0;
    }
    if (lost_ > 0 || !writeLine(prefix, text)) ++lost_;
}

bool LogSink::writeLine(std::string_view prefix, std::string_view text) {
    if (!finishLine()) return false;
    std::string line;
    line.reserve(prefix.size() + text.size() + 1);
    line.append(prefix).append(text);
    std::replace(line.begin(), line.end(), '\n', ' ');
    line += '\n';
    const std::size_t taken = send(line);
    if (taken == 0) return false;
    line.erase(0, taken);
    rest_ = std::move(line);
    return true;
}

bool LogSink::finishLine() {
    if (!rest_.empty()) rest_.erase(0, send(rest_));
    return rest_.empty();
}

std::size_t LogSink::send(std::string_view bytes) {
    ssize_t written = -1;
    if (path_.empty()) {
        written = writeToShared(descriptor_, bytes);
    } else {
        if (descriptor_ < 0) descriptor_ = ::open(path_.c_str(), ownFlags);
        if (descriptor_ >= 0) written = writeSome(descriptor_, bytes);
    }
    return written > 0 ? static_cast<std::size_t>(written) : 0;
}

}  // namespace velmora
