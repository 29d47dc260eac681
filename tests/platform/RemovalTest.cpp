#include "platform/FileOperations.h"

#include "linux/ModeJournal.h"
#include "linux/RemovalError.h"
#include "platform/Platform.h"
#include "support/ChildProcess.h"
#include "support/NeedsRoot.h"
#include "support/Removals.h"
#include "support/TestEnvironment.h"
#include "support/TestTree.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>

#include <fstream>
#include <thread>

namespace brightsweep {
namespace {

using test::removeItem;
using test::targetIn;
using test::TestTree;

FileOperations &files() {
    return *Platform::current().files;
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
        EXPECT_FALSE(removeItem(targetIn(tree.path("root"), name))) << name;
    EXPECT_EQ(tree.snapshot("outside"), outside);
    EXPECT_EQ(tree.snapshot("root").size(), 1u);
    EXPECT_TRUE(tree.exists("root/neighbour"));
}

TEST(Removal, EmptiesNoFolderThatAFlagKeeps) {
    test::needRoot();
    TestTree tree;
    tree.file("root/item/below/file");
    tree.file("root/file");
    for (const auto &[name, flag, error] : {std::tuple("item", "i", RemovalError::Immutable),
                                            std::tuple("file", "a", RemovalError::AppendOnly)}) {
        const auto kept = tree.path("root").append(name).native();
        ASSERT_EQ(test::runProgram({"/usr/bin/chattr", std::string("+") + flag, kept}).status, 0);
        EXPECT_EQ(removeItem(targetIn(tree.path("root"), name)), error);
        EXPECT_EQ(test::runProgram({"/usr/bin/chattr", std::string("-") + flag, kept}).status, 0);
    }
    EXPECT_TRUE(tree.exists("root/item/below/file"));
}

TEST(Removal, GoesTenThousandLevelsDeep) {
    TestTree tree;
    tree.deepChain("root/deep", 10'000);
    tree.file("root/kept");
    EXPECT_FALSE(removeItem(targetIn(tree.path("root"), "deep")));
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
        EXPECT_TRUE(removeItem(targetIn(tree.path("root"), relative))) << relative;
    EXPECT_EQ(tree.snapshot(), before);
}

TEST(Removal, RecognisesItsRootByWhatItIs) {
    TestTree tree;
    tree.file("root/item", "old");
    const auto old = targetIn(tree.path("root"), "item");
    std::filesystem::rename(tree.path("root"), tree.path("moved"));
    tree.file("root/item", "new");
    const auto before = tree.snapshot();
    EXPECT_TRUE(removeItem(old));
    EXPECT_EQ(tree.snapshot(), before);
}

TEST(Removal, LeavesAnItemWithAMountWhole) {
    test::needRoot();
    TestTree tree;
    tree.file("root/item/first", "kept");
    tree.directory("root/item/deep/mount point");
    tree.file("root/mounted itself/file");
    tree.file("source/file", "kept");
    tree.file("root/other");
    EXPECT_EQ(0, test::runInChild([&] {
                  // A bind mount of the same file system has the same device number.
                  const auto source = tree.path("source");
                  if (!test::enterPrivateMounts() ||
                      !test::bindMount(source, tree.path("root/item/deep/mount point")) ||
                      !test::bindMount(source, tree.path("root/mounted itself")))
                      return 10;
                  const auto busy = std::errc::device_or_resource_busy;
                  const auto root = tree.path("root");
                  if (removeItem(targetIn(root, "item")) != busy ||
                      files().checkRemoval(*files().openItem(targetIn(root, "item"))) != busy)
                      return 1;
                  if (removeItem(targetIn(root, "mounted itself")) != busy)
                      return 2;
                  // Nor is there a way across it, from a root above it.
                  if (removeItem(targetIn(root, "item/deep/mount point/file")) != busy)
                      return 3;
                  return removeItem(targetIn(root, "other")) ? 4 : 0;
              }));
    EXPECT_TRUE(tree.exists("root/item/first"));
    EXPECT_TRUE(tree.exists("source/file"));
    EXPECT_TRUE(tree.exists("root/mounted itself/file"));
}

TEST(Removal, StopsWithinAnItem) {
    TestTree tree;
    tree.file("root/item/a/b");
    const std::atomic<bool> stop{true};
    EXPECT_EQ(removeItem(targetIn(tree.path("root"), "item"), &stop),
              std::errc::operation_canceled);
    EXPECT_TRUE(tree.exists("root/item/a/b"));
}

TEST(Removal, RefusesProtectedPlacesAndWhatHoldsThem) {
    TestTree home(test::TestEnvironment::current().home());
    home.file("Documents/kept");
    home.file("Bilder/kept");
    home.file(".config/user-dirs.dirs", "XDG_PICTURES_DIR=\"$HOME/Bilder\"\n");
    home.link("link to documents", home.path("Documents"));
    const auto before = home.snapshot();
    const auto top = home.top();
    for (const char *item : {"Documents", "Bilder", ".config", ".local"})
        EXPECT_EQ(removeItem(targetIn(top, item)), RemovalError::ProtectedPlace) << item;
    EXPECT_EQ(removeItem(targetIn(top.parent_path(), "home")), RemovalError::ProtectedPlace);
    EXPECT_EQ(removeItem(targetIn("/", "usr")), RemovalError::ProtectedPlace);
    EXPECT_EQ(home.snapshot(), before);
    EXPECT_FALSE(removeItem(targetIn(top, "link to documents")));
    EXPECT_FALSE(removeItem(targetIn(top, "Documents/kept")));
}

// Directories that their owner closed go all the same, and those that survive are closed again:
// after an error, by the program's end, and after a kill by the next start.
TEST(Removal, OpensModesOfDirectoriesAndPutsThemBack) {
    test::needRoot();
    TestTree tree;
    const auto journal = tree.path("journal/modes");
    const auto build = [&] {
        for (const char *folder : {"root", "root/closed", "root/closed/deep", "root/held",
                                   "root/held/foreign", "journal"})
            tree.directory(folder);
        tree.file("root/closed/deep/file");
        tree.file("root/held/foreign/file");
        tree.file("root/held/file");
        for (const char *item : {"root", "root/closed", "root/closed/deep", "root/closed/deep/file",
                                 "root/held", "root/held/file", "journal"})
            ASSERT_EQ(::chown(tree.path(item).c_str(), 65534, 65534), 0);
        tree.mode("root/closed/deep", 0000);
        tree.mode("root/closed", 0400);
        tree.mode("root/held", 0500);
    };
    const auto modeOf = [&](const char *item) {
        struct stat status {};
        ::stat(tree.path(item).c_str(), &status);
        return status.st_mode & 07777u;
    };
    build();
    const auto remove = [&](bool withJournal, bool dies) {
        return test::runInChild([&] {
            const auto closed = targetIn(tree.path("root"), "closed");
            const auto held = targetIn(tree.path("root"), "held");
            if (!test::becomeUnprivileged())
                return 16;
            if (withJournal && files().openModeJournal(journal))
                return 17;
            const int answer = (removeItem(closed) ? 0 : 1) | (removeItem(held) ? 0 : 2);
            if (!dies)
                files().closeModeJournal();
            ::_exit(answer);
        });
    };
    EXPECT_EQ(remove(false, false), 0) << "no journal, no change";
    EXPECT_EQ(modeOf("root/closed"), 0400u);
    EXPECT_EQ(remove(true, false), 1);
    EXPECT_FALSE(tree.exists("root/closed"));
    EXPECT_EQ(modeOf("root/held"), 0500u);
    EXPECT_TRUE(tree.exists("root/held/foreign/file"));
    EXPECT_FALSE(tree.exists("journal/modes"));
    // The journal's folders are made; where they cannot be, that is not told as an item that went.
    tree.mode("root/held/foreign", 0500);
    tree.mode("root/held", 0700);
    ASSERT_EQ(::chown(tree.path("root/held/foreign").c_str(), 65534, 65534), 0);
    EXPECT_EQ(0, test::runInChild([&] {
                  const auto foreign = targetIn(tree.path("root"), "held/foreign");
                  if (!test::becomeUnprivileged())
                      return 16;
                  files().openModeJournal(tree.path("missing/modes"));
                  const auto blocked = removeItem(foreign);
                  files().openModeJournal(tree.path("journal/new/folders/modes"));
                  return blocked == std::errc::operation_not_permitted ? !!removeItem(foreign) : 1;
              }));
    tree.mode("root/held", 0500);

    // Killed in between: the next journal puts back what nobody has changed since.
    for (const bool changed : {false, true}) {
        ASSERT_EQ(0, test::runInChild([&] {
                      if (!test::becomeUnprivileged())
                          return 16;
                      ModeJournal killed;
                      const FileDescriptor folder(
                          ::open(tree.path("root/held").c_str(), O_RDONLY | O_DIRECTORY));
                      if (killed.open(journal) || killed.openUp(folder.get(), [&] {
                                                            return tree.path("root/held");
                                                        }).value_or(0) == 0)
                          return 17;
                      ::_exit(0); // no destructor, as by a kill
                  }));
        EXPECT_EQ(modeOf("root/held"), 0700u);
        std::ofstream(journal, std::ios::app) << "cut sho"; // by a full disk
        if (changed)
            tree.mode("root/held", 0710);
        EXPECT_EQ(0, test::runInChild([&] {
                      return test::becomeUnprivileged() && !files().openModeJournal(journal) ? 0
                                                                                             : 1;
                  }));
        EXPECT_EQ(modeOf("root/held"), changed ? 0710u : 0500u);
    }
}

// A directory may go between being opened and being read.
TEST(Removal, GoesOnWhereAnotherProcessRemovesAsWell) {
    TestTree tree;
    tree.directory("root");
    const auto item = targetIn(tree.path("root"), "item");
    for (int round = 0; round < 20; ++round) {
        for (int i = 0; i < 300; ++i)
            tree.directory("root/item/" + std::to_string(i));
        std::thread other([&] {
            for (int i = 0; i < 300; ++i)
                ::rmdir(tree.path("root/item/" + std::to_string(i)).c_str());
        });
        const auto error = removeItem(item);
        other.join();
        EXPECT_FALSE(error) << error.message();
        EXPECT_FALSE(tree.exists("root/item"));
    }
}

// As root everything is deletable, so these rows are judged by a user without rights.
TEST(Removal, KnowsWhatAUserMayTakeOut) {
    test::needRoot();
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
        const auto thing = targetIn(tree.path(row.folder), "item");
        const int answer = test::runInChild([&] {
            if (!test::becomeUnprivileged())
                return 16;
            const auto reached = files().openItem(thing);
            if (!reached)
                return 0;
            const int deletable = files().isDeletable(*reached) ? 1 : 0;
            const int passes = files().checkRemoval(*reached) ? 0 : 2;
            const int goes = removeItem(thing) ? 0 : 4;
            return deletable | passes | goes;
        });
        EXPECT_EQ(answer, (row.deletable ? 1 : 0) | (row.goes ? 6 : 0)) << row.folder;
        EXPECT_EQ(tree.exists(item), !row.goes) << row.folder;
    }
}

} // namespace
} // namespace brightsweep
