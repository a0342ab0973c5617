#pragma once

#include <string>

#include "platform/foundation/Time.h"

namespace velmora {

/// The log: standard error and, when the environment's VELMORA_LOG names a file, that file too.
/// Each line says when (seconds since the plug-in was loaded), in which process, and what. Many
/// processes may share the file: a line is written as a whole.
class LogFile {
public:
    /// The lines carry the process's name.
    explicit LogFile(const std::string& process);
    ~LogFile();
    LogFile(const LogFile&) = delete;
    LogFile& operator=(const LogFile&) = delete;

    void write(const std::string& text);

private:
    Time start_;
    std::string process_;
    int file_ = -1;
};

}  // namespace velmora
