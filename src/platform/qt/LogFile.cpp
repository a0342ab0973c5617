#include "platform/qt/LogFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace velmora {

namespace {

Time now() {
    return std::chrono::steady_clock::now().time_since_epoch();
}

}  // namespace

LogFile::LogFile(const std::string& process)
    : start_(now()), process_(process + '[' + std::to_string(::getpid()) + "]: ") {
    const char* name = std::getenv("VELMORA_LOG");
    if (name && *name) file_ = ::open(name, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0666);
}

LogFile::~LogFile() {
    if (file_ >= 0) ::close(file_);
}

void LogFile::write(const std::string& text) {
    char time[32];
    const double seconds = std::chrono::duration<double>(now() - start_).count();
    std::snprintf(time, sizeof(time), "%.3f ", seconds);
    std::string line = time + process_ + text;
    std::replace(line.begin(), line.end(), '\n', ' ');
    line += '\n';
    const std::string plain = "velmora: " + line.substr(line.find(process_) + process_.size());
    // A log that cannot be written has nowhere to say so.
    [[maybe_unused]] ssize_t written = ::write(STDERR_FILENO, plain.data(), plain.size());
    if (file_ >= 0) written = ::write(file_, line.data(), line.size());
}

}  // namespace velmora
