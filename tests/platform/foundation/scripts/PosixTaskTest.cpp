#include "platform/foundation/scripts/PosixTask.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <thread>

#include "platform/foundation/files/PropertyListFile.h"
#include "support/TemporaryFolder.h"

namespace velmora {
namespace {

using testing::ElementsAre;

class PosixTaskTest : public testing::Test {
protected:
    /// Runs it as a program; nothing when it could not be started.
    std::optional<int> run(const std::string& source) {
        const std::string path = script(source);
        const auto task = PosixTask::launch(path, {});
        if (!task) return std::nullopt;
        EXPECT_TRUE(task->isRunning());
        task->waitUntilExit();
        EXPECT_FALSE(task->isRunning());
        return task->terminationStatus();
    }

    std::string script(const std::string& source) {
        const std::string path = folder_.path("script");
        std::ofstream(path) << source;
        ::chmod(path.c_str(), 0744);
        return path;
    }

    std::string output() {
        std::ifstream file(folder_.path("out"));
        return {std::istreambuf_iterator<char>(file), {}};
    }

    /// Shell that writes into the folder.
    std::string shell(const std::string& commands) {
        return "#!/bin/sh\nexec >'" + folder_.path("out") + "'\n" + commands + "\n";
    }

    TemporaryFolder folder_;
};

TEST_F(PosixTaskTest, TheStatusTellsHowItEnded) {
    EXPECT_EQ(run("#!/bin/sh\nexit 0\n"), 0);
    EXPECT_EQ(run("#!/bin/sh\nexit 3\n"), 3);
    EXPECT_EQ(run("#!/bin/sh\nkill -TERM $$\n"), 128 + SIGTERM);
    EXPECT_EQ(run("#!/no/such/interpreter\n"), std::nullopt);
    EXPECT_EQ(run("#!\n"), std::nullopt);
    EXPECT_EQ(run(""), std::nullopt);
    EXPECT_FALSE(PosixTask::launch(folder_.path("none"), {}));
    EXPECT_FALSE(PosixTask::launch(folder_.path(), {}));
}

TEST_F(PosixTaskTest, TheChildGetsNothingOfTheHostThatIsNotItsOwn) {
    const int leaked = ::open("/dev/null", O_RDONLY);
    ASSERT_GE(leaked, 3);
    ::dup2(leaked, 77);
    std::signal(SIGTERM, SIG_IGN);
    sigset_t all;
    sigset_t before;
    ::sigfillset(&all);
    ::sigprocmask(SIG_BLOCK, &all, &before);
    EXPECT_EQ(run(shell("cat; test -e /proc/$$/fd/77 || test -e /proc/$$/fd/" +
                        std::to_string(leaked) + " || pwd; kill -TERM $$")),
              128 + SIGTERM);
    ::sigprocmask(SIG_SETMASK, &before, nullptr);
    std::signal(SIGTERM, SIG_DFL);
    ::close(77);
    ::close(leaked);
    EXPECT_EQ(output(), std::filesystem::current_path().string() + "\n");
}

TEST_F(PosixTaskTest, TheChildDoesNotLoadThePlugin) {
    const char* const environment[] = {"A=velmora",
                                       "QT_QPA_GENERIC_PLUGINS=evdev:x,velmora,velmora:y,other",
                                       "QT_PLUGIN_PATH=/velmora", nullptr};
    EXPECT_THAT(environmentForChild(environment),
                ElementsAre("A=velmora", "QT_QPA_GENERIC_PLUGINS=evdev:x,other",
                            "QT_PLUGIN_PATH=/velmora"));
    const char* const alone[] = {"QT_QPA_GENERIC_PLUGINS=velmora", "A", nullptr};
    EXPECT_THAT(environmentForChild(alone), ElementsAre("A"));
}

TEST_F(PosixTaskTest, AHostThatCollectsItsChildrenItselfDoesNotHang) {
    std::signal(SIGCHLD, SIG_IGN);
    EXPECT_EQ(run("#!/bin/sh\nexit 3\n"), 0);
    std::signal(SIGCHLD, SIG_DFL);

    const auto task = PosixTask::launch(script("#!/bin/sh\nexit 3\n"), {});
    ASSERT_TRUE(task);
    EXPECT_GT(::waitpid(-1, nullptr, 0), 0);
    task->waitUntilExit();
    EXPECT_FALSE(task->isRunning());
    EXPECT_EQ(task->terminationStatus(), 0);
}

TEST_F(PosixTaskTest, ASignalDoesNotEndTheWait) {
    struct sigaction action {};
    action.sa_handler = [](int) {};
    ::sigaction(SIGALRM, &action, nullptr);
    ::ualarm(20'000, 20'000);
    EXPECT_EQ(run("#!/bin/sh\nsleep 0.2\nexit 5\n"), 5);
    ::ualarm(0, 0);
    std::signal(SIGALRM, SIG_DFL);
}

TEST_F(PosixTaskTest, AFileTellsOfAProgramForAsLongAsItRuns) {
    ::setenv("XDG_RUNTIME_DIR", folder_.path().c_str(), 1);
    const std::string told =
        folder_.path("velmora/script-" + std::to_string(::getpid()) + ".plist");
    const auto task = PosixTask::launch(
        script(shell("until grep -q '</plist>' '" + told + "'; do sleep 0.01; done; cat '" + told +
                     "'; flock -n '" + told + "' echo 'nobody has it'; echo $$")),
        {});
    ASSERT_TRUE(task);
    task->setName("Back up & go");
    task->waitUntilExit();
    ::unsetenv("XDG_RUNTIME_DIR");

    const std::string text = output();
    const auto last = text.rfind('\n', text.size() - 2) + 1;
    const auto list = propertyListFromData(text.substr(0, last));
    ASSERT_TRUE(list && list->dictionary()) << text;
    const auto value = [&](const char* key) { return *list->dictionary()->objectForKey(key); };
    EXPECT_EQ(value("Script"), PropertyList("Back up & go"));
    EXPECT_EQ(value("Process"), PropertyList(std::stoi(text.substr(last))));
    EXPECT_EQ(value("HostProcess"), PropertyList(::getpid()));
    EXPECT_FALSE(std::filesystem::exists(told));
}

TEST_F(PosixTaskTest, AFileThatIsStillOpenForWritingSomewhereIsWaitedFor) {
    const std::string path = script("#!/bin/sh\nexit 4\n");
    int writing = ::open(path.c_str(), O_WRONLY | O_CLOEXEC);
    std::thread closing([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        ::close(writing);
    });
    const auto task = PosixTask::launch(path, {});
    closing.join();
    ASSERT_TRUE(task);
    task->waitUntilExit();
    EXPECT_EQ(task->terminationStatus(), 4);
}

}  // namespace
}  // namespace velmora
