#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace velmora {

/// Where log lines go: something whose reader may be slow, gone, or not there yet. What it does not
/// take at once is dropped and counted, and the next line that it takes comes after one that says
/// how many were lost. No write waits, and none raises a signal: the host must not stand still or
/// end for a line of ours.
class LogSink {
public:
    /// A descriptor of the host's, whose flags are never changed and which may become another one
    /// any time.
    explicit LogSink(int shared) : descriptor_(shared) {}
    /// A file of our own, made if it is not there; a pipe is opened once it has a reader.
    explicit LogSink(std::string path);
    ~LogSink();
    LogSink(const LogSink&) = delete;
    LogSink& operator=(const LogSink&) = delete;

    /// Throws only for want of memory.
    void write(std::string_view prefix, std::string_view text);

    /// One more line that was lost before it got here.
    void countLost() { ++lost_; }

private:
    bool writeLine(std::string_view prefix, std::string_view text);
    bool finishLine();
    std::size_t send(std::string_view bytes);

    int descriptor_ = -1;
    /// Empty for a descriptor of the host's.
    std::string path_;
    /// What is left of a line that was taken in part: it goes before any other.
    std::string rest_;
    std::size_t lost_ = 0;
};

}  // namespace velmora
