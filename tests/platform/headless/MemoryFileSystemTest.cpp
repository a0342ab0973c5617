#include "platform/headless/MemoryFileSystem.h"

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

TEST(MemoryFileSystemTest, AFolderIsListedAndGoesOnlyWhenItIsEmpty) {
    MemoryFileSystem files;
    files.createDirectories("/a/sub");
    files.writeAtomically("/a/x", "x");
    files.writeAtomically("/a/sub/y", "y");
    files.writeAtomically("/a-x", "no part of /a");
    EXPECT_THAT(files.namesIn("/a/"), ElementsAre("sub", "x"));
    EXPECT_THAT(files.namesIn("/none"), ElementsAre());

    EXPECT_FALSE(files.remove("/a"));
    EXPECT_TRUE(files.remove("/a/x"));
    EXPECT_TRUE(files.remove("/a/sub/y"));
    EXPECT_TRUE(files.remove("/a/sub"));
    EXPECT_TRUE(files.remove("/a"));
    EXPECT_FALSE(files.remove("/a"));
    EXPECT_FALSE(files.remove("/"));
    EXPECT_THAT(files.files(), ElementsAre("/a-x"));
}

TEST(MemoryFileSystemTest, ADuplicateHoldsWhatWasThereWhenTheFileIsReplaced) {
    MemoryFileSystem files;
    const auto stamp = files.writeAtomically("/x", "old");
    EXPECT_EQ(files.read("/x", noLimit).stamp, stamp);
    EXPECT_TRUE(files.duplicate("/x", "/kept"));
    EXPECT_FALSE(files.duplicate("/x", "/kept"));
    EXPECT_FALSE(files.duplicate("/none", "/y"));
    EXPECT_FALSE(files.duplicate("/x", "/none/y"));
    files.writeAtomically("/x", "new");
    EXPECT_NE(files.stamp("/x"), stamp);
    EXPECT_THAT(files.contentsOfFile("/kept", noLimit), Optional(std::string("old")));
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
    files.remove("/x");
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
