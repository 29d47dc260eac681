#include "platform/FileOperations.h"

#include "platform/Platform.h"
#include "support/ChildProcess.h"
#include "support/TestEnvironment.h"
#include "support/TestTree.h"

#include <gtest/gtest.h>

#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>

#include <fstream>

namespace brightsweep {
namespace {

using test::TestTree;

FileOperations &files() {
    return *Platform::current().files;
}

RemovalTarget target(const std::filesystem::path &root, const std::string &relative) {
    return {*files().rememberRoot(root), relative};
}

TEST(Removal, TakesEveryKindOfItemAndLeavesWhatLinksLeadTo) {
    TestTree tree;
    tree.file("outside/kept/file", "precious");
    tree.hardLink("root/item/hard", tree.path("outside/kept/file"));
    tree.link("root/item/link", tree.path("outside/kept"));
    tree.link("root/alone", tree.path("outside/kept"));
    tree.fifo("root/item/fifo");
    tree.socket("root/item/socket");
    tree.sparseFile("root/item/sparse", 1ull << 40);
    tree.file("root/item/line\nend");
    tree.file("root/item/bad\xff");
    tree.file("root/item/-rf");
    tree.file("root/item/" + std::string(255, 'n'));
    tree.file("root/-v");
    tree.file("root/--");
    tree.file("root/neighbour", "kept");
    ::unlink(tree.path("root/item/hard").c_str());
    const auto outside = tree.snapshot("outside");
    tree.hardLink("root/item/hard", tree.path("outside/kept/file"));

    for (const char *name : {"item", "alone", "-v", "--"})
        EXPECT_FALSE(files().removeItem(target(tree.path("root"), name))) << name;
    EXPECT_EQ(tree.snapshot("outside"), outside);
    EXPECT_EQ(tree.snapshot("root").size(), 1u);
    EXPECT_TRUE(tree.exists("root/neighbour"));
}

TEST(Removal, GoesTenThousandLevelsDeep) {
    TestTree tree;
    tree.deepChain("root/deep", 10'000);
    tree.file("root/kept");
    EXPECT_FALSE(files().removeItem(target(tree.path("root"), "deep")));
    EXPECT_FALSE(tree.exists("root/deep"));
    EXPECT_TRUE(tree.exists("root/kept"));
}

TEST(Removal, RefusesWhatIsNoPlainWayDownFromTheRoot) {
    TestTree tree;
    tree.file("root/a/b");
    tree.link("root/link", tree.path("root/a"));
    tree.file("other/b");
    const auto before = tree.snapshot();
    for (const char *relative :
         {"", ".", "..", "a/..", "../other", "/a", "a/", "a//b", "a/./b", "link/b", "a/b/c"})
        EXPECT_TRUE(files().removeItem(target(tree.path("root"), relative))) << relative;
    EXPECT_EQ(tree.snapshot(), before);
}

TEST(Removal, RecognisesItsRootByWhatItIs) {
    TestTree tree;
    tree.file("root/item", "old");
    const auto old = target(tree.path("root"), "item");
    std::filesystem::rename(tree.path("root"), tree.path("moved"));
    tree.file("root/item", "new");
    const auto before = tree.snapshot();
    EXPECT_TRUE(files().removeItem(old));
    EXPECT_EQ(tree.snapshot(), before);
}

TEST(Removal, LeavesAnItemWithAMountWhole) {
    TestTree tree;
    tree.file("root/item/first", "kept");
    tree.directory("root/item/deep/mount point");
    tree.file("root/mounted itself/file");
    tree.file("source/file", "kept");
    tree.file("root/other");
    EXPECT_EQ(0, test::runInChild([&] {
                  // A bind mount of the same file system has the same device number.
                  if (::unshare(CLONE_NEWNS) != 0 ||
                      ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
                      ::mount(tree.path("source").c_str(),
                              tree.path("root/item/deep/mount point").c_str(), nullptr, MS_BIND,
                              nullptr) != 0 ||
                      ::mount(tree.path("source").c_str(), tree.path("root/mounted itself").c_str(),
                              nullptr, MS_BIND, nullptr) != 0)
                      return 10;
                  const auto busy = std::errc::device_or_resource_busy;
                  const auto root = tree.path("root");
                  if (files().removeItem(target(root, "item")) != busy ||
                      files().checkRemoval(target(root, "item")) != busy)
                      return 1;
                  if (files().removeItem(target(root, "mounted itself")) != busy)
                      return 2;
                  return files().removeItem(target(root, "other")) ? 3 : 0;
              }));
    EXPECT_TRUE(tree.exists("root/item/first"));
    EXPECT_TRUE(tree.exists("source/file"));
    EXPECT_TRUE(tree.exists("root/mounted itself/file"));
}

TEST(Removal, StopsWithinAnItem) {
    TestTree tree;
    tree.file("root/item/a/b");
    const std::atomic<bool> stop{true};
    EXPECT_EQ(files().removeItem(target(tree.path("root"), "item"), &stop),
              std::errc::operation_canceled);
    EXPECT_TRUE(tree.exists("root/item/a/b"));
}

TEST(Removal, ChangesModesOnlyOfWhatHasNoOtherName) {
    TestTree tree;
    tree.file("outside", "x");
    tree.mode("outside", 0640);
    tree.hardLink("root/hard", tree.path("outside"));
    tree.link("root/link", tree.path("outside"));
    tree.file("root/own");
    tree.mode("root/own", 0400);
    tree.directory("root/folder");
    tree.mode("root/folder", 0500);
    const auto root = tree.path("root");
    EXPECT_FALSE(files().setPermissions(target(root, "hard"), 0777));
    EXPECT_FALSE(files().setPermissions(target(root, "link"), 0777));
    EXPECT_EQ(*files().setPermissions(target(root, "own"), 0777), 0400u);
    EXPECT_EQ(*files().setPermissions(target(root, "folder"), 0777), 0500u);
    struct stat status {};
    ::stat(tree.path("outside").c_str(), &status);
    EXPECT_EQ(status.st_mode & 07777, 0640u);
    ::stat(tree.path("root/own").c_str(), &status);
    EXPECT_EQ(status.st_mode & 07777, 0777u);
}

// As root everything is deletable, so these rows are judged by a user without rights.
TEST(Removal, KnowsWhatAUserMayTakeOut) {
    TestTree tree;
    tree.mode("", 0755);
    ::chmod(test::TestEnvironment::current().root().c_str(), 0755);
    const struct {
        const char *folder;
        unsigned folderMode;
        uid_t folderOwner;
        unsigned itemMode;
        uid_t itemOwner;
        bool deletable;
        bool goes;
    } rows[] = {
        {"own", 0755, 65534, 0644, 65534, true, true},
        {"own-unwritable-item", 0755, 65534, 0444, 65534, false, true},
        {"foreign-folder", 0755, 0, 0666, 65534, false, false},
        {"unsearchable", 0644, 65534, 0666, 65534, false, false},
        {"sticky-foreign-item", 01777, 0, 0666, 0, false, false},
        {"sticky-own-item", 01777, 0, 0644, 65534, true, true},
        {"sticky-own-folder", 01755, 65534, 0666, 0, true, true},
    };
    for (const auto &row : rows) {
        const std::string item = std::string(row.folder) + "/item";
        tree.file(item);
        ASSERT_EQ(::chown(tree.path(item).c_str(), row.itemOwner, row.itemOwner), 0);
        tree.mode(item, row.itemMode);
        ASSERT_EQ(::chown(tree.path(row.folder).c_str(), row.folderOwner, row.folderOwner), 0);
        tree.mode(row.folder, row.folderMode);
        const auto thing = target(tree.path(row.folder), "item");
        const int answer = test::runInChild([&] {
            if (!test::becomeUnprivileged())
                return 16;
            const int deletable = files().isDeletable(thing) ? 1 : 0;
            const int passes = files().checkRemoval(thing) ? 0 : 2;
            const int goes = files().removeItem(thing) ? 0 : 4;
            return deletable | passes | goes;
        });
        EXPECT_EQ(answer, (row.deletable ? 1 : 0) | (row.goes ? 6 : 0)) << row.folder;
        EXPECT_EQ(tree.exists(item), !row.goes) << row.folder;
    }
}

} // namespace
} // namespace brightsweep
