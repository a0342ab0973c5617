#include "platform/foundation/MemoryFileSystem.h"

#include <gmock/gmock.h>

namespace velmora {
namespace {

using testing::ElementsAre;
using testing::Eq;
using testing::Optional;

constexpr std::size_t noLimit = std::string::npos;

TEST(MemoryFileSystemTest, FilesLieInFoldersThatExist) {
    MemoryFileSystem files;
    EXPECT_FALSE(files.writeAtomically("/a/x", "1"));
    EXPECT_FALSE(files.createDirectoryAtPath("/a/b"));
    EXPECT_TRUE(files.createDirectoryAtPath("/a"));
    EXPECT_FALSE(files.createDirectoryAtPath("/a/"));
    EXPECT_TRUE(files.writeAtomically("/a/x", "1"));
    EXPECT_TRUE(files.writeAtomically("//a//x", "2"));
    EXPECT_FALSE(files.writeAtomically("/a", "a folder"));
    EXPECT_FALSE(files.writeAtomically("/a/x/y", "below a file"));
    files.createDirectories("/b/c/d/");
    EXPECT_TRUE(files.fileExistsAtPath("/b/c"));
    EXPECT_THAT(files.contentsOfFile("/a/x", noLimit), Optional(std::string("2")));
    EXPECT_THAT(files.contentsOfFile("/a/x", 0), Eq(std::nullopt));
    EXPECT_THAT(files.contentsOfFile("/a", noLimit), Eq(std::nullopt));
    EXPECT_THAT(files.files(), ElementsAre("/a/x"));
}

TEST(MemoryFileSystemTest, RenamingReplacesFilesAndTakesAFoldersContentsAlong) {
    MemoryFileSystem files;
    files.createDirectories("/a/sub");
    files.writeAtomically("/a/x", "x");
    files.writeAtomically("/a/sub/y", "y");
    files.writeAtomically("/a-x", "no part of /a");
    files.writeAtomically("/z", "z");

    EXPECT_FALSE(files.rename("/none", "/b"));
    EXPECT_FALSE(files.rename("/a", "/a/sub/b"));
    EXPECT_FALSE(files.rename("/a", "/z"));
    EXPECT_FALSE(files.rename("/z", "/a"));
    EXPECT_FALSE(files.rename("/z", "/none/z"));
    EXPECT_TRUE(files.rename("/z", "/z"));
    EXPECT_TRUE(files.rename("/z", "/a/x"));
    EXPECT_TRUE(files.rename("/a", "/b"));
    EXPECT_THAT(files.files(), ElementsAre("/a-x", "/b/sub/y", "/b/x"));
    EXPECT_THAT(files.contentsOfFile("/b/x", noLimit), Optional(std::string("z")));

    EXPECT_FALSE(files.remove("/b"));
    EXPECT_TRUE(files.remove("/b/x"));
    EXPECT_TRUE(files.remove("/b/sub/y"));
    EXPECT_TRUE(files.remove("/b/sub"));
    EXPECT_TRUE(files.remove("/b"));
    EXPECT_FALSE(files.remove("/b"));
    EXPECT_FALSE(files.remove("/"));
    EXPECT_THAT(files.files(), ElementsAre("/a-x"));
}

TEST(MemoryFileSystemTest, AWriteHasTheClocksDateUntilAnotherIsSet) {
    NSDate now{100};
    MemoryFileSystem files([&now] { return now; });
    files.writeAtomically("/x", "1");
    now = {200};
    files.writeAtomically("/y", "1");
    EXPECT_THAT(files.modificationDate("/x"), Optional(NSDate{100}));
    EXPECT_THAT(files.modificationDate("/y"), Optional(NSDate{200}));
    EXPECT_TRUE(files.setModificationDate("/x", {1}));
    EXPECT_THAT(files.modificationDate("/x"), Optional(NSDate{1}));
    files.rename("/x", "/y");
    EXPECT_THAT(files.modificationDate("/y"), Optional(NSDate{1}));
    EXPECT_THAT(files.modificationDate("/x"), Eq(std::nullopt));
    EXPECT_FALSE(files.setModificationDate("/x", {1}));
}

TEST(MemoryFileSystemTest, WithoutAClockEveryWriteHasADateOfItsOwn) {
    MemoryFileSystem files;
    files.writeAtomically("/x", "1");
    const auto first = files.modificationDate("/x");
    files.writeAtomically("/x", "1");
    EXPECT_NE(files.modificationDate("/x"), first);
}

}  // namespace
}  // namespace velmora
