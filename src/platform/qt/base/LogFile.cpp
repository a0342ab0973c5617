#include "platform/qt/base/LogFile.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>

namespace velmora {

namespace {

Time now() {
    return std::chrono::steady_clock::now().time_since_epoch();
}

}  // namespace

LogFile::LogFile(const std::string& process)
    : start_(now()),
      process_(process + '[' + std::to_string(::getpid()) + "]: "),
      standardError_(STDERR_FILENO) {
    const char* name = std::getenv("VELMORA_LOG");
    if (name && *name) file_.emplace(name);
}

void LogFile::write(const std::string& text) noexcept {
    try {
        standardError_.write("velmora: ", text);
    } catch (...) {
        standardError_.countLost();
    }
    if (!file_) return;
    try {
        char time[32];
        const double seconds = std::chrono::duration<double>(now() - start_).count();
        std::snprintf(time, sizeof(time), "%.3f ", seconds);
        file_->write(time + process_, text);
    } catch (...) {
        file_->countLost();
    }
}

}  // namespace velmora
