#include "foundation/SmallFile.h"

#include "foundation/FileDescriptor.h"
#include "support/ChildProcess.h"
#include "support/NeedsRoot.h"
#include "support/TestTree.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

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
    EXPECT_FALSE(writeSmallFile(tree.path("made"), "new"));
    ASSERT_EQ(::stat(tree.path("made").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0600u);
}

TEST(SmallFile, ReplacesOnlyFilesOfTheUsersOwn) {
    test::needRoot();
    test::TestTree tree;
    const auto foreign = tree.file("foreign", "theirs");
    tree.link("to foreign", foreign);
    const auto foreignLink = tree.link("foreign link", tree.file("own", "mine"));
    tree.link("to device", "/dev/null");
    tree.link("severed", "missing");
    ASSERT_EQ(::chown(foreign.c_str(), test::unprivilegedUser, test::unprivilegedUser), 0);
    ASSERT_EQ(::lchown(foreignLink.c_str(), test::unprivilegedUser, 0), 0);
    tree.fifo("fifo");
    const auto before = tree.snapshot();
    for (const char *name : {"to foreign", "foreign link", "to device", "severed", "fifo"})
        EXPECT_TRUE(writeSmallFile(tree.path(name), "new")) << name;
    EXPECT_EQ(tree.snapshot(), before);
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
    // Root writes the user's own file without taking it over.
    EXPECT_FALSE(writeSmallFile(foreign, "new"));
    struct stat status {};
    ASSERT_EQ(::stat(foreign.c_str(), &status), 0);
    EXPECT_EQ(status.st_uid, test::unprivilegedUser);
    EXPECT_EQ(status.st_gid, test::unprivilegedUser);
}

TEST(SmallFile, ClearsWhatKilledWritersLeft) {
    test::needRoot();
    test::TestTree tree;
    const std::string ours = ".com.norvmac.DeskSweeperPro.new-";
    tree.file("d/" + ours + "abcdef");
    const FileDescriptor living(
        ::open(tree.file("d/" + ours + "living").c_str(), O_RDWR | O_CLOEXEC));
    ASSERT_EQ(::flock(living.get(), LOCK_EX), 0);
    tree.file("d/" + ours + "longername");
    tree.file("d/com.norvmac.DeskSweeperPro.conf.backup");
    tree.hardLink("d/" + ours + "linked", tree.file("elsewhere"));
    tree.directory("d/" + ours + "folder");
    const auto foreign = tree.file("d/" + ours + "theirs");
    ASSERT_EQ(::chown(foreign.c_str(), test::unprivilegedUser, 0), 0);
    auto expected = tree.snapshot("d");
    expected.erase(ours + "abcdef");
    EXPECT_FALSE(writeSmallFile(tree.path("d/file"), "new"));
    auto now = tree.snapshot("d");
    EXPECT_EQ(now.erase("file"), 1u);
    EXPECT_EQ(now, expected);
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
