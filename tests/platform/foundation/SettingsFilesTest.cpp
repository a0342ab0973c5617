#include "platform/foundation/SettingsFiles.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>

#include "platform/foundation/files/FileHistory.h"
#include "platform/foundation/files/PosixFileSystem.h"
#include "platform/headless/MemoryFileSystem.h"
#include "support/HeadlessHost.h"
#include "support/TemporaryFolder.h"

namespace velmora {
namespace {

namespace fs = std::filesystem;

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

using namespace std::string_literals;

constexpr std::size_t noLimit = std::string::npos;

std::vector<std::string> versionsIn(FileSystem& files, const std::string& path) {
    const FileHistory history(files, path);
    std::vector<std::string> contents;
    for (const std::string& version : history.versions()) {
        contents.push_back(files.contentsOfFile(history.pathOf(version)).value_or("(none)"));
    }
    return contents;
}

class SettingsFilesTest : public testing::Test {
protected:
    SettingsFilesTest() { host_.files().memory().createDirectories("/d"); }

    void put(const std::string& bytes) { host_.files().memory().writeAtomically("/d/x", bytes); }
    bool write(const PropertyList& root) { return settings_.write(files_, root, "/d/x"); }
    bool write(const std::string& contents) {
        return settings_.writeContents(files_, contents, "/d/x");
    }
    std::string contents() { return files_.contentsOfFile("/d/x").value_or("(none)"); }
    std::vector<std::string> versions() { return versionsIn(files_, "/d/x"); }

    HeadlessHost host_;
    FileSystem& files_ = host_.files();
    SettingsFiles& settings_ = SettingsFiles::ofProcess();
};

TEST_F(SettingsFilesTest, WhatIsWrittenIsReadBack) {
    EXPECT_TRUE(write(NSArray{"a", NSArray{}}));
    SettingsFiles::Reading reading = settings_.read(files_, "/d/x");
    ASSERT_NE(reading.array(), nullptr);
    EXPECT_EQ(*reading.array(), (NSArray{"a", NSArray{}}));
    EXPECT_EQ(reading.dictionary(), nullptr);
    EXPECT_THAT(host_.files().memory().files(), ElementsAre("/d/x"));
}

TEST_F(SettingsFilesTest, WhateverIsReplacedByOtherContentsIsKept) {
    const struct {
        std::string before;
        bool isKept;
    } rows[] = {
        {"<plist><array><string>a", true}, {"{a = b;}", true}, {std::string(100, '\0'), true},
        {std::string(500'000, 'x'), true}, {"", true},         {"(new)", false},
    };
    for (const auto& row : rows) {
        for (const bool isReadFirst : {false, true}) {
            HeadlessHost host;
            MemoryFileSystem& memory = host.files().memory();
            memory.createDirectories("/d");
            memory.writeAtomically("/d/x", row.before);
            SettingsFiles& settings = SettingsFiles::ofProcess();
            if (isReadFirst) settings.read(host.files(), "/d/x");
            EXPECT_TRUE(settings.writeContents(host.files(), "(new)", "/d/x"));
            EXPECT_EQ(memory.contentsOfFile("/d/x"), "(new)");
            EXPECT_EQ(versionsIn(memory, "/d/x"), row.isKept ? std::vector<std::string>{row.before}
                                                             : std::vector<std::string>{});
            EXPECT_THAT(host.log(), IsEmpty());
        }
    }
}

TEST_F(SettingsFilesTest, WhatCannotBeReadIsKeptToo) {
    put("(old)");
    host_.files().setReadForbidden("/d/x", true);
    EXPECT_TRUE(write("(new)"s));
    host_.files().setReadForbidden("/d/x", false);
    EXPECT_THAT(versions(), ElementsAre("(old)"));
}

TEST_F(SettingsFilesTest, TheWritesOfAPassLeaveOneVersionAndThoseOfOthersAllOfThem) {
    put("(0)");
    write("(1)"s);
    write("(2)"s);
    EXPECT_THAT(versions(), ElementsAre("(0)"));
    put("(other)");
    write("(3)"s);
    EXPECT_THAT(versions(), ElementsAre("(0)", "(other)"));
    // What was read of somebody else is not ours, though it is known.
    put("(another)");
    settings_.read(files_, "/d/x");
    write("(4)"s);
    EXPECT_THAT(versions(), ElementsAre("(0)", "(other)", "(another)"));
    EXPECT_EQ(host_.files().waitsFor("/d/x"), 0);
    host_.advance(1);
    EXPECT_EQ(host_.files().waitsFor("/d/x"), 1);
    write("(5)"s);
    EXPECT_THAT(versions(), ElementsAre("(0)", "(other)", "(another)", "(4)"));
}

TEST_F(SettingsFilesTest, TheLastThirtyVersionsStay) {
    for (int i = 0; i <= 40; ++i) {
        write("(" + std::to_string(i) + ")");
        host_.advance(1);
    }
    const std::vector<std::string> kept = versions();
    ASSERT_THAT(kept, SizeIs(30));
    EXPECT_EQ(kept.front(), "(10)");
    EXPECT_EQ(kept.back(), "(39)");
}

TEST_F(SettingsFilesTest, AVersionIsNamedByTheMomentAndComesAfterTheOthers) {
    NSDate now{1'700'000'000'123'456'789};
    MemoryFileSystem files([&now] { return now; });
    const std::string path = "/x.plist";
    FileHistory history(files, path);
    files.writeAtomically(path, "x");
    files.createDirectoryAtPath("/History");
    files.writeAtomically("/History/x.plist.notes", "no version");
    files.writeAtomically("/History/x.plist.2023-13-14T22-13-20.123Z", "of no month");
    EXPECT_EQ(history.keep(), "2023-11-14T22-13-20.123Z");
    EXPECT_EQ(history.keep(), "2023-11-14T22-13-20.124Z");
    now.nanoseconds -= 3'600'000'000'000;
    EXPECT_EQ(history.keep(), "2023-11-14T22-13-20.125Z") << "the clock was set back";
    EXPECT_THAT(history.versions(), SizeIs(3));
    EXPECT_EQ(history.pathOf("V"), "/History/x.plist.V");
}

TEST_F(SettingsFilesTest, AWriteThatFailsLeavesTheFileAndItsHistoryAsTheyWere) {
    put("(old)");
    host_.files().setWriteFails("/d/x", true);
    EXPECT_FALSE(write("(new)"s));
    EXPECT_EQ(contents(), "(old)");
    EXPECT_THAT(versions(), IsEmpty());
    host_.files().setWriteFails("/d/x", false);

    PropertyList deep = 1;
    for (int i = 0; i < 300; ++i) deep = NSArray{deep};
    EXPECT_FALSE(write(deep)) << "it would not be read";
    EXPECT_EQ(contents(), "(old)");
    EXPECT_FALSE(settings_.write(files_, NSArray{}, "/none/x"));
    EXPECT_FALSE(settings_.write(files_, NSArray{}, "/d"));
    EXPECT_THAT(host_.log(), IsEmpty());
}

TEST_F(SettingsFilesTest, AVersionThatStoodInNoFileIsKeptAndReachesTheDisk) {
    write(NSArray{"a"});
    host_.advance(1);
    settings_.keepVersion(files_, NSArray{"a"}, "/d/x");
    EXPECT_THAT(versions(), IsEmpty()) << "the file has it";
    settings_.keepVersion(files_, NSArray{"b"}, "/d/x");
    EXPECT_EQ(settings_.read(files_, "/d/x").root, PropertyList(NSArray{"a"}));
    FileHistory history(files_, "/d/x");
    ASSERT_THAT(history.versions(), SizeIs(1));
    const std::string version = history.pathOf(history.versions()[0]);
    EXPECT_EQ(settings_.read(files_, version).root, PropertyList(NSArray{"b"}));
    host_.advance(1);
    EXPECT_EQ(host_.files().waitsFor(version), 1);
}

TEST_F(SettingsFilesTest, WhatCannotBeKeptIsReplacedAllTheSameAndToldOnce) {
    put("(old)");
    host_.files().setWriteFails("/d/History", true);
    EXPECT_TRUE(write("(new)"s));
    EXPECT_EQ(contents(), "(new)");
    host_.advance(1);
    EXPECT_TRUE(write("(newer)"s));
    EXPECT_THAT(host_.log(),
                ElementsAre("Cannot keep what '/d/x' held before in the folder History"));
}

TEST_F(SettingsFilesTest, AFaultIsToldOnceForEachReasonUntilItHasPassed) {
    put("(a)");
    for (int i = 0; i < 3; ++i) {
        host_.files().setReadFails("/d", true);
        EXPECT_TRUE(settings_.read(files_, "/d/x").failed);
        EXPECT_TRUE(settings_.read(files_, "/d/x").failed);
        EXPECT_TRUE(settings_.read(files_, "/d/y").failed);
        EXPECT_THAT(host_.log(), SizeIs(i < 2 ? 1 : 2));
        host_.files().setReadFails("/d", false);
        EXPECT_FALSE(settings_.read(files_, "/d/y").failed);
        if (i == 0) continue;
        EXPECT_FALSE(settings_.read(files_, "/d/x").failed);
    }
    EXPECT_THAT(host_.log(), ElementsAre("Cannot read '/d/x' now: Input/output error",
                                         "Cannot read '/d/x' now: Input/output error"));
}

/// On the disk, as the tool has it.
class SettingsFilesOnDiskTest : public testing::Test {
protected:
    std::string path(const std::string& name) const { return folder_.path(name); }
    bool write(const std::string& name) {
        return SettingsFiles::ofProcess().write(files_, NSArray{"new"}, path(name));
    }
    mode_t mode(const std::string& name) const {
        struct stat status {};
        return ::stat(path(name).c_str(), &status) == 0 ? status.st_mode & 07777 : 0;
    }

    TemporaryFolder folder_;
    PosixFileSystem files_;
};

TEST_F(SettingsFilesOnDiskTest, WhatIsNoFileIsNotTouched) {
    fs::create_directory(path("folder"));
    std::ofstream(path("folder/inside")) << "x";
    fs::create_symlink("folder", path("link"));
    ASSERT_EQ(::mkfifo(path("pipe").c_str(), 0600), 0);
    for (const char* name : {"folder", "link", "pipe"}) EXPECT_FALSE(write(name)) << name;
    EXPECT_TRUE(fs::exists(path("folder/inside")));
    EXPECT_TRUE(fs::is_symlink(path("link")));
    EXPECT_TRUE(fs::is_fifo(path("pipe")));
    EXPECT_EQ(std::distance(fs::directory_iterator(path("")), fs::directory_iterator()), 3);
}

TEST_F(SettingsFilesOnDiskTest, AVersionKeepsItsModeAndTheFolderIsItsOwnersAlone) {
    std::ofstream(path("file")) << "(old)";
    fs::permissions(path("file"), fs::perms(0640));
    fs::create_symlink("file", path("link"));
    EXPECT_TRUE(write("link"));
    const FileHistory history(files_, path("link"));
    ASSERT_THAT(history.versions(), SizeIs(1));
    const std::string version = history.pathOf(history.versions()[0]);
    EXPECT_EQ(files_.contentsOfFile(version, noLimit), "(old)");
    EXPECT_EQ(mode("History/" + fs::path(version).filename().string()), 0640U);
    EXPECT_EQ(mode("History"), 0700U);
    EXPECT_EQ(mode("file"), 0640U);
}

}  // namespace
}  // namespace velmora
