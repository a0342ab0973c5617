#include "platform/foundation/files/PosixFileSystem.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/file.h>
#include <sys/inotify.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <thread>

#include "platform/foundation/files/Descriptor.h"
#include "support/TemporaryFolder.h"

namespace velmora {
namespace {

namespace fs = std::filesystem;

using testing::ElementsAre;
using testing::Eq;
using testing::Optional;
using testing::UnorderedElementsAre;

constexpr std::size_t noLimit = std::string::npos;

class PosixFileSystemTest : public testing::Test {
protected:
    std::string path(const std::string& name) const { return folder_.path(name); }

    std::string contents(const std::string& name) {
        return files_.contentsOfFile(path(name), noLimit).value_or("(none)");
    }

    std::vector<std::string> names() const {
        std::vector<std::string> found;
        for (const auto& entry : fs::directory_iterator(folder_.path())) {
            found.push_back(entry.path().filename());
        }
        return found;
    }

    mode_t mode(const std::string& name) const {
        struct stat status {};
        return ::stat(path(name).c_str(), &status) == 0 ? status.st_mode & 07777 : 0;
    }

    TemporaryFolder folder_;
    PosixFileSystem files_;
};

TEST_F(PosixFileSystemTest, AFileIsWrittenAndReplacedAsAWhole) {
    const std::string big(3'000'000, 'x');
    EXPECT_FALSE(files_.fileExistsAtPath(path("a")));
    EXPECT_TRUE(files_.writeAtomically(path("a"), "one"));
    EXPECT_EQ(contents("a"), "one");
    EXPECT_TRUE(files_.writeAtomically(path("a"), big));
    EXPECT_EQ(contents("a"), big);
    EXPECT_TRUE(files_.writeAtomically(path("a"), ""));
    EXPECT_EQ(contents("a"), "");
    EXPECT_TRUE(files_.fileExistsAtPath(path("a")));
    EXPECT_THAT(names(), ElementsAre("a"));
}

TEST_F(PosixFileSystemTest, TheModeIsKeptAndWhatIsNewIsItsOwnersAlone) {
    const mode_t mask = ::umask(0);
    EXPECT_TRUE(files_.writeAtomically(path("new"), "1"));
    ::umask(mask);
    EXPECT_EQ(mode("new"), 0600U);
    EXPECT_TRUE(files_.createDirectoryAtPath(path("folder")));
    EXPECT_EQ(mode("folder"), 0700U);
    for (const mode_t kept : {0600U, 0666U, 0444U, 0755U}) {
        ASSERT_EQ(::chmod(path("new").c_str(), kept), 0);
        EXPECT_TRUE(files_.writeAtomically(path("new"), "2"));
        EXPECT_EQ(mode("new"), kept);
    }
}

TEST_F(PosixFileSystemTest, ALinkStaysAndWhatItPointsToIsReplaced) {
    fs::create_directory(path("elsewhere"));
    std::ofstream(path("elsewhere/file")) << "old";
    fs::create_symlink("elsewhere/second", path("link"));
    fs::create_symlink("file", path("elsewhere/second"));
    EXPECT_TRUE(files_.writeAtomically(path("link"), "new"));
    EXPECT_EQ(contents("elsewhere/file"), "new");
    EXPECT_FALSE(fs::is_symlink(path("elsewhere/file")));
    EXPECT_EQ(fs::read_symlink(path("link")), "elsewhere/second");
    EXPECT_EQ(fs::read_symlink(path("elsewhere/second")), "file");

    fs::create_symlink(path("elsewhere/missing"), path("dangling"));
    EXPECT_FALSE(files_.fileExistsAtPath(path("dangling")));
    EXPECT_TRUE(files_.writeAtomically(path("dangling"), "made"));
    EXPECT_EQ(contents("elsewhere/missing"), "made");
    EXPECT_TRUE(fs::is_symlink(path("dangling")));
    EXPECT_THAT(names(), UnorderedElementsAre("elsewhere", "link", "dangling"));
}

TEST_F(PosixFileSystemTest, AWriteThatFailsLeavesEverythingAsItWas) {
    fs::create_directory(path("folder"));
    std::ofstream(path("file")) << "old";
    fs::create_symlink("round", path("circle"));
    fs::create_symlink("circle", path("round"));
    fs::create_symlink("folder", path("linked folder"));
    fs::create_symlink("none/x", path("nowhere"));
    ASSERT_EQ(::mkfifo(path("pipe").c_str(), 0600), 0);
    for (const char* name :
         {"folder", "file/below", "none/x", "circle", "linked folder", "nowhere", "pipe"}) {
        EXPECT_FALSE(files_.writeAtomically(path(name), "new")) << name;
    }
    EXPECT_EQ(contents("file"), "old");
    EXPECT_TRUE(fs::is_fifo(path("pipe")));
    EXPECT_TRUE(fs::is_empty(path("folder")));
    EXPECT_THAT(names(), UnorderedElementsAre("folder", "file", "circle", "round", "linked folder",
                                              "nowhere", "pipe"));
}

TEST_F(PosixFileSystemTest, AWriteThatFindsNoRoomLeavesTheOldFile) {
    std::ofstream(path("file")) << "old";
    // A limit on the size of files acts like a full disk.
    const auto signal = std::signal(SIGXFSZ, SIG_IGN);
    struct rlimit before {};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
    struct rlimit small = before;
    small.rlim_cur = 10'000;
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
    const auto written = files_.writeAtomically(path("file"), std::string(20'000, 'x'));
    ::setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, signal);
    EXPECT_FALSE(written);
    EXPECT_EQ(contents("file"), "old");
    EXPECT_THAT(names(), ElementsAre("file"));
}

TEST_F(PosixFileSystemTest, AReaderNeverSeesAPartOfAFile) {
    const std::string one(100'000, '1');
    const std::string two(200'000, '2');
    ASSERT_TRUE(files_.writeAtomically(path("file"), one));
    std::atomic<bool> done = false;
    std::thread writer([&] {
        PosixFileSystem other;
        for (int i = 0; i < 100; ++i) other.writeAtomically(path("file"), i % 2 == 0 ? two : one);
        done = true;
    });
    int parts = 0;
    while (!done) {
        const std::string seen = contents("file");
        if (seen != one && seen != two) ++parts;
    }
    writer.join();
    EXPECT_EQ(parts, 0);
}

TEST_F(PosixFileSystemTest, OnlyRegularFilesAreReadAndNothingIsWaitedFor) {
    ASSERT_EQ(::mkfifo(path("pipe").c_str(), 0600), 0);
    fs::create_symlink("pipe", path("link"));
    for (const std::string& name :
         {path("pipe"), path("link"), path(""), path("none"), std::string("/dev/zero")}) {
        EXPECT_THAT(files_.contentsOfFile(name, noLimit), Eq(std::nullopt)) << name;
    }
    // Nor is a pipe opened: whoever waits for a reader would take us for one.
    const Descriptor watch(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC));
    ASSERT_GE(::inotify_add_watch(watch.get(), path("pipe").c_str(), IN_OPEN), 0);
    files_.read(path("pipe"), noLimit);
    char event[sizeof(inotify_event)];
    EXPECT_EQ(::read(watch.get(), event, sizeof event), -1);
    // Its size is said to be 0.
    EXPECT_THAT(files_.contentsOfFile("/proc/self/status", noLimit),
                Optional(testing::HasSubstr("Pid:")));
    EXPECT_THAT(files_.contentsOfFile("/proc/self/status", 10), Eq(std::nullopt));
    std::ofstream(path("ten")) << "0123456789";
    EXPECT_THAT(files_.contentsOfFile(path("ten"), 10), Optional(std::string("0123456789")));
    EXPECT_THAT(files_.contentsOfFile(path("ten"), 9), Eq(std::nullopt));
}

TEST_F(PosixFileSystemTest, TheModificationDateIsThatOfTheLinkItselfToTheNanosecond) {
    std::ofstream(path("file")) << "x";
    fs::create_symlink("file", path("link"));
    const struct timespec times[] = {{0, 0}, {1'234'567'890, 123'456'789}};
    ASSERT_EQ(::utimensat(AT_FDCWD, path("file").c_str(), times, 0), 0);
    const NSDate date{1'234'567'890'123'456'789};
    EXPECT_THAT(files_.modificationDate(path("file")), Optional(date));
    EXPECT_THAT(files_.modificationDate(path("link")), Optional(testing::Ne(date)));
    EXPECT_THAT(files_.modificationDate(path("none")), Eq(std::nullopt));
}

TEST_F(PosixFileSystemTest, FoldersAreMadeAndFilesRemoved) {
    EXPECT_TRUE(files_.createDirectoryAtPath(path("folder")));
    EXPECT_FALSE(files_.createDirectoryAtPath(path("folder")));
    EXPECT_FALSE(files_.createDirectoryAtPath(path("none/folder")));
    std::ofstream(path("a")) << "a";
    EXPECT_THAT(files_.namesIn(path("")), UnorderedElementsAre("folder", "a"));
    EXPECT_TRUE(files_.remove(path("a")));
    EXPECT_FALSE(files_.remove(path("a")));
    EXPECT_THAT(files_.namesIn(path("none")), testing::IsEmpty());
}

TEST_F(PosixFileSystemTest, ADuplicateHoldsWhatWasThereWhenTheFileIsReplaced) {
    std::ofstream(path("file")) << "old";
    fs::create_symlink("file", path("link"));
    EXPECT_TRUE(files_.duplicate(path("link"), path("kept")));
    EXPECT_FALSE(fs::is_symlink(path("kept")));
    EXPECT_EQ(fs::hard_link_count(path("file")), 2U);
    EXPECT_TRUE(files_.writeAtomically(path("link"), "new"));
    EXPECT_EQ(contents("kept"), "old");
    EXPECT_FALSE(files_.duplicate(path("link"), path("kept"))) << "something stands there";
    EXPECT_EQ(contents("kept"), "old");
    EXPECT_FALSE(files_.duplicate(path("file"), path("none/kept")));
    EXPECT_FALSE(files_.duplicate(path("none"), path("kept too")));
    // No file has two names on two file systems.
    EXPECT_TRUE(files_.duplicate("/proc/self/cmdline", path("copy")));
    EXPECT_THAT(contents("copy"), testing::HasSubstr("velmora_tests"));
    EXPECT_EQ(mode("copy"), 0600U);
}

TEST_F(PosixFileSystemTest, AStampTellsEveryChangeOfAFile) {
    const auto written = files_.writeAtomically(path("file"), "1");
    ASSERT_TRUE(written);
    EXPECT_EQ(files_.stamp(path("file")), written);
    EXPECT_EQ(files_.read(path("file"), noLimit).stamp, *written);
    EXPECT_NE(files_.writeAtomically(path("file"), "1"), written);
    std::ofstream(path("file"), std::ios::app) << "2";
    EXPECT_NE(files_.stamp(path("file")), written);
    EXPECT_EQ(files_.stamp(path("none")), std::nullopt);
    EXPECT_EQ(files_.stamp(path(""))->kind, FileStamp::Kind::folder);
}

TEST_F(PosixFileSystemTest, AFaultOfTheMachineIsTellableFromAMissingFile) {
    using Outcome = FileReading::Outcome;
    std::ofstream(path("file")) << "x";
    fs::create_symlink("circle", path("circle"));
    EXPECT_EQ(files_.read(path("none"), noLimit).outcome, Outcome::missing);
    EXPECT_EQ(files_.read(path("file/below"), noLimit).outcome, Outcome::missing);
    EXPECT_EQ(files_.read(path("circle"), noLimit).outcome, Outcome::unreadable);
    EXPECT_EQ(files_.read(path(""), noLimit).outcome, Outcome::unreadable);
    // The memory of a process that is nothing to read at that place.
    EXPECT_EQ(files_.read("/proc/self/mem", noLimit).outcome, Outcome::fault);

    struct rlimit before {};
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &before), 0);
    struct rlimit none = before;
    none.rlim_cur = 0;
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &none), 0);
    const FileReading reading = files_.read(path("file"), noLimit);
    ::setrlimit(RLIMIT_NOFILE, &before);
    EXPECT_EQ(reading.outcome, Outcome::fault);
    EXPECT_THAT(reading.reason, testing::HasSubstr("open files"));
}

TEST_F(PosixFileSystemTest, WhatAProcessLeftInTheMiddleOfAWriteIsRemoved) {
    const pid_t gone = ::fork();
    if (gone == 0) ::_exit(0);
    ::waitpid(gone, nullptr, 0);
    const std::string left = ".velmora-" + std::to_string(gone) + "-1";
    const std::string locked = ".velmora-" + std::to_string(gone) + "-2";
    const std::string ours = ".velmora-" + std::to_string(::getpid()) + "-1000000";
    for (const std::string& name : {left, locked, ours, std::string(".velmora-x")}) {
        std::ofstream(path(name)) << "x";
    }
    // As a process of another container would have it, whose number means nothing here.
    const Descriptor holder(::open(path(locked).c_str(), O_RDONLY | O_CLOEXEC));
    ASSERT_EQ(::flock(holder.get(), LOCK_EX | LOCK_NB), 0);
    ASSERT_TRUE(files_.writeAtomically(path("file"), "new"));
    files_.settle(path("file"));
    EXPECT_THAT(names(), UnorderedElementsAre("file", locked, ours, ".velmora-x"));
}

}  // namespace
}  // namespace velmora
