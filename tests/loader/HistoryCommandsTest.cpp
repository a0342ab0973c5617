#include "loader/HistoryCommands.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "loader/SettingsCommands.h"
#include "platform/foundation/files/FileHistory.h"
#include "platform/foundation/files/PosixFileSystem.h"
#include "support/TemporaryFolder.h"

namespace velmora {
namespace {

namespace fs = std::filesystem;

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

/// A user with a settings directory; what the tool prints is read back.
class HistoryCommandsTest : public testing::Test {
protected:
    HistoryCommandsTest() : before_(std::getenv("HOME") ? std::getenv("HOME") : "") {
        ::setenv("HOME", home_.path().c_str(), 1);
        fs::create_directories(file(""));
    }
    ~HistoryCommandsTest() override { ::setenv("HOME", before_.c_str(), 1); }

    std::string file(const std::string& name) const {
        return home_.path("Library/Application Support/Velmora/" + name);
    }
    void put(const std::string& name, const std::string& contents) const {
        std::ofstream(file(name)) << contents;
    }
    /// Keeps what the file holds, as writing it does, and puts other contents there.
    std::string replace(const std::string& name, const std::string& contents) {
        const std::string path = file(name);
        const auto version = FileHistory(files_, path).keep();
        files_.writeAtomically(path, contents);
        return version.value_or("none");
    }

    template <class Command>
    static std::string printed(int status, Command command) {
        testing::internal::CaptureStdout();
        testing::internal::CaptureStderr();
        EXPECT_EQ(command(), status);
        return testing::internal::GetCapturedStdout() + testing::internal::GetCapturedStderr();
    }
    static std::string history(const std::vector<std::string>& names, int status = 0) {
        return printed(status, [&] { return listHistory(names); });
    }
    static std::string check(int status) {
        return printed(status, [] { return checkSettingsFiles({}); });
    }

    TemporaryFolder home_;
    std::string before_;
    PosixFileSystem files_;
};

TEST_F(HistoryCommandsTest, EachVersionIsListedWithWhatBecameOfIt) {
    put("VelmoraGestures.plist", "({Trigger = l; Path = \"File/Close\";}");
    const std::string broken = replace("VelmoraGestures.plist", "({Trigger = l; Path = a;})");
    const std::string mended =
        replace("VelmoraGestures.plist", "({Trigger = l; Path = a;}, {Trigger = r; Path = b;})");
    put("VelmoraFrames.plist", "{ About = \"1 2 3 4\"; }");
    replace("VelmoraFrames.plist", "{ About = \"5 2 3 4\"; }");
    EXPECT_EQ(history({"VelmoraGestures.plist"}),
              file("VelmoraGestures.plist") + ":\n  " + broken +
                  "  36 bytes; cannot be read: it is no property list\n"
                  "      then changed all of it\n  " +
                  mended + "  1 definition\n      then added \"r\" for \"b\"\n");
    EXPECT_THAT(history({}), AllOf(HasSubstr(mended), HasSubstr("About from 1 2 3 4 to 5 2 3 4")));
    fs::remove(file("VelmoraFrames.plist"));
    EXPECT_THAT(history({file("VelmoraFrames.plist")}), HasSubstr("then removed the file"));
    EXPECT_THAT(history({"other.plist"}, 1), HasSubstr("no versions"));
}

TEST_F(HistoryCommandsTest, AVersionIsBroughtBackAndWhatItReplacesIsKept) {
    put("aGestures.plist", "one");
    const std::string first = replace("aGestures.plist", "two");
    const auto restore = [&](const std::string& version, int status) {
        return printed(status, [&] { return restoreVersion("aGestures.plist", version); });
    };
    EXPECT_THAT(restore("2026", 1), HasSubstr("no version"));
    EXPECT_THAT(restore(first, 0), Not(HasSubstr("could not")));
    EXPECT_EQ(files_.contentsOfFile(file("aGestures.plist")), "one");
    const std::string path = file("aGestures.plist");
    const FileHistory history(files_, path);
    ASSERT_EQ(history.versions().size(), 2U);
    EXPECT_EQ(files_.contentsOfFile(history.pathOf(history.versions()[1])), "two");
    fs::remove(path);
    fs::create_directory(path);
    EXPECT_THAT(restore(first, 1), HasSubstr("cannot be written"));
}

TEST_F(HistoryCommandsTest, ACheckTellsWhyNothingWorks) {
    EXPECT_THAT(check(1), HasSubstr("VelmoraDefaults.plist: is missing"));
    put("VelmoraDefaults.plist", "{ gestureSize = 20; }");
    EXPECT_EQ(check(0), "");
    put("VelmoraDefaults.plist", "{ gestureSize = ");
    put("aGestures.plist", "{ gestureSize = 20; }");
    fs::create_directory(file("aScripts.plist"));
    fs::create_symlink("gone", file("aShortcuts.plist"));
    EXPECT_THAT(check(1), AllOf(HasSubstr("VelmoraDefaults.plist: cannot be read: it is no prop"),
                                HasSubstr("aGestures.plist: holds no array"),
                                HasSubstr("aScripts.plist: cannot be read: it is no file"),
                                HasSubstr("aShortcuts.plist: cannot be read: No such file")));
    fs::rename(file(""), home_.path("elsewhere"));
    EXPECT_THAT(check(1), HasSubstr("Velmora: cannot be read: No such file"));
}

}  // namespace
}  // namespace velmora
