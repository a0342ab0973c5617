#include "platform/foundation/scripts/PosixFetch.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>

#include "platform/foundation/files/Descriptor.h"
#include "platform/foundation/scripts/PosixTask.h"

namespace velmora {

namespace {

constexpr const char* fetcher = "/usr/bin/curl";
constexpr const char* secondsAtMost = "10";

/// All that comes until the other end is closed; nothing when it is more than so many bytes.
std::optional<std::string> readAll(const Descriptor& from, std::size_t mostBytes) {
    std::string all;
    std::array<char, 4096> part{};
    for (;;) {
        const ssize_t count = ::read(from.get(), part.data(), part.size());
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return {};
        if (count == 0) return all;
        all.append(part.data(), static_cast<std::size_t>(count));
        if (all.size() > mostBytes) return {};
    }
}

}  // namespace

std::optional<std::string> fetchThroughCurl(const std::string& address, std::size_t mostBytes) {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) return {};
    Descriptor reading(ends[0]);
    Descriptor writing(ends[1]);
    const char* protocols = address.starts_with("https:") ? "=https" : "=http,https";
    // No settings of the user's ("-q" must come first), and no other protocols.
    const auto task =
        PosixTask::launch(fetcher,
                          {"-q", "--silent", "--fail", "--location", "--max-time", secondsAtMost,
                           "--max-filesize", std::to_string(mostBytes), "--proto", protocols,
                           "--proto-redir", protocols, "--", address},
                          writing.get());
    writing.close();
    if (!task) return {};
    std::optional<std::string> answer = readAll(reading, mostBytes);
    // It ends when nobody reads what it has.
    reading.close();
    task->waitUntilExit();
    const bool succeeded = !task->isRunning() && task->terminationStatus() == 0;
    return succeeded ? answer : std::nullopt;
}

}  // namespace velmora
