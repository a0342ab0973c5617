#include "platform/foundation/files/PosixScriptFile.h"

#include <gmock/gmock.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <functional>

#include "platform/foundation/scripts/PosixTask.h"
#include "support/TemporaryFolder.h"

namespace velmora {
namespace {

namespace fs = std::filesystem;

/// No test depends on how soon it gets its turn; CTest ends one that never does.
constexpr std::chrono::hours asLongAsItTakes(1);

class PosixScriptFileTest : public testing::Test {
protected:
    std::unique_ptr<PosixScriptFile> create(const std::string& contents = "new",
                                            std::chrono::milliseconds patience = asLongAsItTakes) {
        return PosixScriptFile::create(path_, contents, patience);
    }

    static void write(const std::string& path, const std::string& contents) {
        std::ofstream(path) << contents;
    }

    static std::string read(const std::string& path) {
        std::ifstream file(path);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    TemporaryFolder folder_;
    std::string path_ = folder_.path("script");
    std::string other_ = folder_.path("other");
};

TEST_F(PosixScriptFileTest, TheFileIsExecutableWhateverTheMaskAndGoesWithTheObject) {
    for (const mode_t mask : {0000, 0022, 0777}) {
        const mode_t before = ::umask(mask);
        {
            const auto file = create("#!/bin/sh\n");
            ASSERT_TRUE(file);
            struct stat status {};
            ASSERT_EQ(::lstat(path_.c_str(), &status), 0);
            EXPECT_EQ(status.st_mode, static_cast<mode_t>(S_IFREG | 0744));
            EXPECT_EQ(read(path_), "#!/bin/sh\n");
        }
        ::umask(before);
        EXPECT_FALSE(fs::exists(path_));
    }
}

TEST_F(PosixScriptFileTest, OnlyAnOwnPlainFileThatWasLeftBehindIsReplaced) {
    write(path_, "a longer old script");
    EXPECT_TRUE(create());
    EXPECT_FALSE(fs::exists(path_));
}

TEST_F(PosixScriptFileTest, WhatSomebodyPlantedIsRefusedAndStaysAsItIs) {
    struct Row {
        const char* what;
        std::function<void()> plant;
    };
    for (const Row& row : std::vector<Row>{
             {"a link to a file", [&] { fs::create_symlink(other_, path_); }},
             {"a link to nothing", [&] { fs::create_symlink(folder_.path("none"), path_); }},
             {"a hard link", [&] { fs::create_hard_link(other_, path_); }},
             {"a folder", [&] { fs::create_directory(path_); }},
             {"a pipe", [&] { ::mkfifo(path_.c_str(), 0666); }},
             {"another user's file",
              [&] {
                  write(path_, "theirs");
                  if (::chown(path_.c_str(), 12345, 12345) != 0) fs::remove(path_);
              }},
         }) {
        write(other_, "kept");
        row.plant();
        struct stat before {};
        // Only the superuser can give a file away.
        if (::lstat(path_.c_str(), &before) != 0) continue;
        EXPECT_FALSE(create()) << row.what;
        struct stat after {};
        ASSERT_EQ(::lstat(path_.c_str(), &after), 0) << row.what;
        EXPECT_EQ(before.st_ino, after.st_ino) << row.what;
        EXPECT_EQ(before.st_mode, after.st_mode) << row.what;
        EXPECT_EQ(read(other_), "kept") << row.what;
        EXPECT_FALSE(fs::exists(folder_.path("none"))) << row.what;
        fs::remove_all(path_);
    }
}

TEST_F(PosixScriptFileTest, AFolderInWhichOthersCanReplaceTheFileIsRefused) {
    for (const auto& [mode, works] :
         std::vector<std::pair<mode_t, bool>>{{0700, true}, {0777, false}, {01777, true}}) {
        ASSERT_EQ(::chmod(folder_.path().c_str(), mode), 0);
        EXPECT_EQ(create() != nullptr, works) << std::oct << mode;
        EXPECT_FALSE(fs::exists(path_));
    }
    EXPECT_FALSE(PosixScriptFile::create(folder_.path("none/script"), "new"));
}

TEST_F(PosixScriptFileTest, AScriptMayRemoveReplaceOrLinkItsOwnFile) {
    {
        const auto file = create();
        fs::remove(path_);
    }
    {
        const auto file = create();
        write(other_, "replaced");
        fs::rename(other_, path_);
    }
    EXPECT_EQ(read(path_), "replaced");
    {
        const auto file = create();
        fs::create_hard_link(path_, other_);
    }
    EXPECT_FALSE(fs::exists(path_));
    EXPECT_EQ(read(other_), "new");
}

TEST_F(PosixScriptFileTest, AFileThatIsInUseIsWaitedForSoLongOnly) {
    auto first = create("first");
    ASSERT_TRUE(first);
    EXPECT_FALSE(create("second", std::chrono::milliseconds(100)));
    EXPECT_EQ(read(path_), "first");
    // Somebody in the host has forked and not gone on to another program.
    const pid_t child = ::fork();
    if (child == 0) {
        ::pause();
        ::_exit(0);
    }
    first.reset();
    EXPECT_TRUE(create("second"));
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
}

/// Whether what ran was the script of that status, whole.
bool runsItsOwn(const std::string& path, int status) {
    const std::string padding(50'000, '#');
    const auto file = PosixScriptFile::create(
        path, "#!/bin/sh\n" + padding + "\nexit " + std::to_string(status) + "\n", asLongAsItTakes);
    const auto task = file ? PosixTask::launch(path, {}) : nullptr;
    if (!task) return false;
    task->waitUntilExit();
    return !task->isRunning() && task->terminationStatus() == status;
}

TEST_F(PosixScriptFileTest, ProcessesAtOnceRunEachItsOwnScriptOnly) {
    std::vector<pid_t> children;
    for (int number = 0; number < 4; ++number) {
        const pid_t child = ::fork();
        if (child == 0) {
            constexpr int runs = 12;
            bool own = true;
            for (int i = 0; i < runs; ++i) {
                own = runsItsOwn(path_, 1 + number * runs + i) && own;
                // The others get their turn.
                ::usleep(static_cast<useconds_t>(1000 * (1 + number)));
            }
            ::_exit(own ? 0 : 1);
        }
        children.push_back(child);
    }
    for (const pid_t child : children) {
        int status = -1;
        EXPECT_EQ(::waitpid(child, &status, 0), child);
        EXPECT_EQ(status, 0);
    }
    EXPECT_FALSE(fs::exists(path_));
}

}  // namespace
}  // namespace velmora
