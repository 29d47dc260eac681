#include "foundation/SmallFile.h"

#include "support/ChildProcess.h"
#include "support/NeedsRoot.h"
#include "support/TestTree.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace brightsweep {
namespace {

TEST(SmallFile, ReplacesAndKeepsModeAndLink) {
    test::TestTree tree;
    const auto file = tree.file("kept/file", "old");
    tree.mode("kept/file", 0640);
    const auto link = tree.link("link", file);
    EXPECT_FALSE(writeSmallFile(link, "new"));
    EXPECT_EQ(*readSmallFile(file), "new");
    EXPECT_TRUE(std::filesystem::is_symlink(link));
    struct stat status {};
    ASSERT_EQ(::stat(file.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0640u);
    EXPECT_EQ(tree.snapshot("kept").size(), 1u); // nothing left beside it
}

TEST(SmallFile, ReadsOnlyFilesAndOnlySoMuch) {
    test::TestTree tree;
    EXPECT_EQ(*readSmallFile(tree.file("file", "0123456789"), 4), "0123");
    EXPECT_EQ(*readSmallFile(tree.file("empty", "")), "");
    EXPECT_TRUE(readSmallFile(tree.fifo("fifo")).error());
    EXPECT_TRUE(readSmallFile(tree.directory("folder")).error());
    EXPECT_EQ(readSmallFile(tree.path("missing")).error(), std::errc::no_such_file_or_directory);
}

TEST(SmallFile, FullDiskKeepsTheOldText) {
    test::needRoot();
    test::TestTree tree;
    const auto folder = tree.directory("small");
    const int status = test::runInChild([&] {
        if (!test::mountSmallFileSystem(folder.native(), 64 * 1024))
            return 1;
        const auto file = folder / "file";
        if (writeSmallFile(file, "old"))
            return 2;
        if (writeSmallFile(file, std::string(200 * 1024, 'n')) != std::errc::no_space_on_device)
            return 3;
        if (*readSmallFile(file) != "old")
            return 4;
        // The cut attempt has been taken away, so that there is room again.
        return writeSmallFile(file, std::string(20 * 1024, 'n')) ? 5 : 0;
    });
    EXPECT_EQ(status, 0);
}

} // namespace
} // namespace brightsweep
