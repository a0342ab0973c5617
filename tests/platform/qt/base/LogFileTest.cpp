#include "platform/qt/base/LogFile.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <regex>
#include <string>

namespace velmora {

namespace {

/// Takes what is there, without waiting.
std::string drain(int reader) {
    ::fcntl(reader, F_SETFL, ::fcntl(reader, F_GETFL) | O_NONBLOCK);
    std::string all;
    char bytes[4096];
    for (ssize_t count; (count = ::read(reader, bytes, sizeof bytes)) > 0;) {
        all.append(bytes, static_cast<std::size_t>(count));
    }
    return all;
}

/// Writes until nothing more is taken; the descriptor's flags are as before.
void fill(int writer) {
    const int flags = ::fcntl(writer, F_GETFL);
    ::fcntl(writer, F_SETFL, flags | O_NONBLOCK);
    const std::string many(4096, '.');
    while (::write(writer, many.data(), many.size()) > 0) continue;
    while (::write(writer, ".", 1) > 0) continue;
    ::fcntl(writer, F_SETFL, flags);
}

struct Ends {
    int reader;
    int writer;
};

Ends pipeEnds() {
    int ends[2];
    EXPECT_EQ(::pipe2(ends, O_CLOEXEC), 0);
    return {ends[0], ends[1]};
}

Ends socketEnds() {
    int ends[2];
    EXPECT_EQ(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends), 0);
    return {ends[0], ends[1]};
}

Ends terminalEnds() {
    const int master = ::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    EXPECT_EQ(::grantpt(master), 0);
    EXPECT_EQ(::unlockpt(master), 0);
    return {master, ::open(::ptsname(master), O_RDWR | O_NOCTTY | O_CLOEXEC)};
}

bool isPending(int signal) {
    sigset_t pending;
    ::sigpending(&pending);
    return ::sigismember(&pending, signal) == 1;
}

std::string withoutDots(std::string text) {
    return std::regex_replace(text, std::regex("[.\r]"), "");
}

}  // namespace

class LogFileTest : public ::testing::Test {
protected:
    void SetUp() override {
        const auto folder =
            std::filesystem::temp_directory_path() / ("velmora-log-" + std::to_string(::getpid()));
        std::filesystem::create_directories(folder);
        file_ = folder / "log";
        ::unsetenv("VELMORA_LOG");
        standardError_ = ::fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 3);
    }

    void TearDown() override {
        putBack();
        ::close(standardError_);
        ::unsetenv("VELMORA_LOG");
        std::filesystem::remove_all(file_.parent_path());
    }

    void putBack() const { ::dup2(standardError_, STDERR_FILENO); }

    /// The writer becomes standard error.
    static void redirect(const Ends& ends) {
        ::dup2(ends.writer, STDERR_FILENO);
        ::close(ends.writer);
    }

    LogFile logTo(const std::filesystem::path& file) {
        ::setenv("VELMORA_LOG", file.c_str(), 1);
        // Only the file matters.
        redirect({-1, ::open("/dev/null", O_WRONLY)});
        return LogFile("host");
    }

    std::filesystem::path file_;

private:
    int standardError_ = -1;
};

TEST_F(LogFileTest, AReaderThatIsSlowLosesLinesAndIsToldHowMany) {
    for (const auto& [name, ends] :
         {std::pair("a pipe", pipeEnds()), std::pair("a socket", socketEnds()),
          std::pair("a terminal", terminalEnds())}) {
        SCOPED_TRACE(name);
        redirect(ends);
        LogFile log("host");
        log.write("first");
        fill(STDERR_FILENO);
        const int flags = ::fcntl(STDERR_FILENO, F_GETFL);
        log.write("second");
        log.write("third");
        EXPECT_EQ(::fcntl(STDERR_FILENO, F_GETFL), flags);
        std::string seen = drain(ends.reader);
        log.write("fourth");
        log.write("fifth");
        seen += drain(ends.reader);
        EXPECT_EQ(withoutDots(seen),
                  "velmora: first\nvelmora: 2 lines were lost\nvelmora: fourth\nvelmora: fifth\n");
        putBack();
        ::close(ends.reader);
    }
}

TEST_F(LogFileTest, AReaderThatHasGoneRaisesNoSignal) {
    for (const auto& [name, ends] :
         {std::pair("a pipe", pipeEnds()), std::pair("a socket", socketEnds()),
          std::pair("a terminal", terminalEnds())}) {
        SCOPED_TRACE(name);
        redirect(ends);
        ::close(ends.reader);
        sigset_t before, after;
        ::pthread_sigmask(SIG_BLOCK, nullptr, &before);
        LogFile("host").write("nobody reads it");
        ::pthread_sigmask(SIG_BLOCK, nullptr, &after);
        EXPECT_EQ(::sigismember(&before, SIGPIPE), ::sigismember(&after, SIGPIPE));
        EXPECT_FALSE(isPending(SIGPIPE));
        putBack();
    }
}

TEST_F(LogFileTest, ASignalThatTheHostKeepsWaitingIsLeftToIt) {
    const Ends ends = pipeEnds();
    redirect(ends);
    ::close(ends.reader);
    sigset_t pipe, before;
    ::sigemptyset(&pipe);
    ::sigaddset(&pipe, SIGPIPE);
    ::pthread_sigmask(SIG_BLOCK, &pipe, &before);
    ::raise(SIGPIPE);
    LogFile("host").write("nobody reads it");
    EXPECT_TRUE(isPending(SIGPIPE));
    const timespec atOnce{};
    ::sigtimedwait(&pipe, nullptr, &atOnce);
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

TEST_F(LogFileTest, ALongLineThatIsTakenInPartsIsFinishedBeforeTheNext) {
    const Ends ends = socketEnds();
    redirect(ends);
    LogFile log("host");
    const std::string longText(4'000'000, 'x');
    log.write(longText);
    log.write("lost");
    std::string seen;
    for (int i = 0; i < 1000 && seen.find("last") == std::string::npos; ++i) {
        const std::string part = drain(ends.reader);
        seen += part;
        if (part.empty()) break;
        log.write("last");
    }
    EXPECT_EQ(seen.substr(0, longText.size() + 10), "velmora: " + longText + "\n");
    EXPECT_TRUE(std::regex_match(seen.substr(longText.size() + 10),
                                 std::regex("velmora: \\d+ lines were lost\nvelmora: last\n")));
    ::close(ends.reader);
}

TEST_F(LogFileTest, APipeIsWrittenToOnceSomebodyReadsIt) {
    ASSERT_EQ(::mkfifo(file_.c_str(), 0600), 0);
    LogFile log = logTo(file_);
    log.write("first");
    const int reader = ::open(file_.c_str(), O_RDONLY | O_NONBLOCK);
    log.write("second");
    EXPECT_TRUE(
        std::regex_match(drain(reader), std::regex("[\\d.]+ host\\[\\d+\\]: 1 line was lost\n"
                                                   "[\\d.]+ host\\[\\d+\\]: second\n")));
    ::close(reader);
    log.write("third");
    EXPECT_FALSE(isPending(SIGPIPE));
}

TEST_F(LogFileTest, AFileThatIsMadeIsItsOwnersAloneAndAModeIsKept) {
    const mode_t mask = ::umask(0);
    logTo(file_).write("first");
    ::umask(mask);
    EXPECT_EQ(std::filesystem::status(file_).permissions(), std::filesystem::perms(0600));
    std::filesystem::permissions(file_, std::filesystem::perms(0644));
    logTo(file_).write("second");
    EXPECT_EQ(std::filesystem::status(file_).permissions(), std::filesystem::perms(0644));
}

TEST_F(LogFileTest, AFileThatMayNotGrowRaisesNoSignal) {
    LogFile log = logTo(file_);
    log.write("first");
    rlimit before{};
    ::getrlimit(RLIMIT_FSIZE, &before);
    const rlimit full{std::filesystem::file_size(file_), before.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &full);
    log.write("second");
    ::setrlimit(RLIMIT_FSIZE, &before);
    log.write("several\nlines");
    std::ifstream file(file_);
    const std::string seen(std::istreambuf_iterator<char>(file), {});
    EXPECT_TRUE(std::regex_match(seen, std::regex(".*: first\n.*: 1 line was lost\n"
                                                  ".*: several lines\n")))
        << seen;
}

}  // namespace velmora
