#pragma once

#include <optional>
#include <string>

#include "platform/port/Time.h"
#include "platform/qt/base/LogSink.h"

namespace velmora {

/// The log: standard error and, when the environment's VELMORA_LOG names a file, that file too.
/// Each line says when (seconds since the plug-in was loaded), in which process, and what. Many
/// processes may share the file: a line is written as a whole.
class LogFile {
public:
    /// The lines carry the process's name.
    explicit LogFile(const std::string& process);

    /// Neither blocks nor throws nor raises a signal. A line that cannot be written at once is
    /// dropped; the next one that can comes after one that says how many were lost.
    void write(const std::string& text) noexcept;

private:
    Time start_;
    std::string process_;
    LogSink standardError_;
    std::optional<LogSink> file_;
};

}  // namespace velmora
