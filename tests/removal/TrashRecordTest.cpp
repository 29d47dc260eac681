#include "removal/TrashRecord.h"

#include "platform/StandardDirectories.h"
#include "removal/FakeRights.h"
#include "removal/NvAuthorization.h"
#include "support/ChildProcess.h"
#include "support/NeedsRoot.h"

#include <gtest/gtest.h>

#include <thread>

namespace brightsweep {
namespace {

using test::AsOrdinaryUser;
using test::FakeRights;
using test::TestTree;
using test::textOf;

TEST(TrashRecord, GoesWithTheItemInEveryKindOfTrash) {
    for (const std::string trash : {"share/Trash", "disk/.Trash-1000", "disk/.Trash/1000"}) {
        TestTree tree;
        for (const char *name : {"item", "item2", "it", "a b"}) {
            tree.file(trash + "/files/" + name + "/file");
            tree.file(trash + "/info/" + name + ".trashinfo");
        }
        const auto sizes =
            tree.file(trash + "/directorysizes", "10 1 item\n20 2 item2\n30 3 a%20b\n"
                                                 "40 4 it%65m\nbroken\n50 5 it");
        tree.mode(trash + "/directorysizes", 0640);
        EXPECT_TRUE(NvAuthorization::synFastRemovePath(tree.path(trash + "/files/item")));
        EXPECT_FALSE(tree.exists(trash + "/info/item.trashinfo"));
        EXPECT_EQ(textOf(sizes), "20 2 item2\n30 3 a%20b\nbroken\n50 5 it");
        EXPECT_TRUE(NvAuthorization::synFastRemovePath(tree.path(trash + "/files/a b")));
        EXPECT_TRUE(NvAuthorization::synFastRemovePath(tree.path(trash + "/files/it")));
        EXPECT_EQ(textOf(sizes), "20 2 item2\nbroken\n");
        EXPECT_EQ(std::filesystem::status(sizes).permissions(), std::filesystem::perms(0640));
        EXPECT_EQ(tree.snapshot(trash + "/info").size(), 1u);
        // What lies deeper has no record of its own, and takes none with it.
        EXPECT_TRUE(NvAuthorization::synFastRemovePath(tree.path(trash + "/files/item2/file")));
        EXPECT_TRUE(tree.exists(trash + "/info/item2.trashinfo"));
        EXPECT_EQ(tree.snapshot(trash).size(), 5u);
        test::removeTree(tree.top());
    }
}

TEST(TrashRecord, TouchesNothingThatIsNoTrash) {
    TestTree tree;
    for (const char *folder : {"project", "Trash-1000", ".Trash-abc", ".Trash-", "other/1000"}) {
        tree.file(std::string(folder) + "/files/item");
        tree.file(std::string(folder) + "/info/item.trashinfo");
        tree.file(std::string(folder) + "/directorysizes", "1 1 item\n");
        EXPECT_TRUE(
            NvAuthorization::synFastRemovePath(tree.path(std::string(folder) + "/files/item")));
        EXPECT_TRUE(tree.exists(std::string(folder) + "/info/item.trashinfo")) << folder;
        EXPECT_EQ(textOf(tree.path(std::string(folder) + "/directorysizes")), "1 1 item\n");
    }
    // Links in the place of its parts are not followed.
    tree.file("outside/item.trashinfo");
    tree.file("outside/sizes", "1 1 item\n1 1 second\n");
    tree.file("Trash/files/item");
    tree.link("Trash/info", tree.path("outside"));
    tree.file(".Trash-7/files/second");
    tree.directory(".Trash-7/info");
    tree.link(".Trash-7/directorysizes", tree.path("outside/sizes"));
    const auto before = tree.snapshot("outside");
    EXPECT_TRUE(NvAuthorization::synFastRemovePath(tree.path("Trash/files/item")));
    EXPECT_TRUE(NvAuthorization::synFastRemovePath(tree.path(".Trash-7/files/second")));
    EXPECT_EQ(tree.snapshot("outside"), before);
}

TEST(TrashRecord, TakesNothingAcrossAMount) {
    test::needRoot();
    TestTree tree;
    tree.file("Trash/files/item");
    tree.directory("Trash/info");
    tree.file("elsewhere/item.trashinfo");
    EXPECT_EQ(0, test::runInChild([&] {
                  return test::enterPrivateMounts() &&
                                 test::bindMount(tree.path("elsewhere"), tree.path("Trash/info")) &&
                                 NvAuthorization::synFastRemovePath(tree.path("Trash/files/item"))
                             ? 0
                             : 1;
              }));
    EXPECT_TRUE(tree.exists("elsewhere/item.trashinfo"));
}

// The home's trash may be a link to a folder of any name; a file of sizes that nobody computed is
// not read.
TEST(TrashRecord, GoesWithTheItemWhereTheTrashIsALink) {
    TestTree home(test::TestEnvironment::current().home());
    TestTree elsewhere;
    elsewhere.file("bin of mine/files/item");
    elsewhere.file("bin of mine/info/item.trashinfo");
    elsewhere.sparseFile("bin of mine/directorysizes", 200ull << 30);
    home.link(".local/share/Trash", elsewhere.path("bin of mine"));
    const auto folders = Platform::current().directories->cleanFolders(CleanPlace::HomeTrash);
    ASSERT_EQ(folders.folders.size(), 1u);
    EXPECT_TRUE(NvAuthorization::synFastRemovePath(RemovalTarget{folders.folders[0], "item"}));
    EXPECT_EQ(elsewhere.snapshot().size(), 4u);
    EXPECT_FALSE(elsewhere.exists("bin of mine/info/item.trashinfo"));
    EXPECT_EQ(std::filesystem::file_size(elsewhere.path("bin of mine/directorysizes")),
              200ull << 30);
}

TEST(TrashRecord, StaysWithAnItemThatStays) {
    TestTree tree;
    tree.file("Trash/files/item");
    tree.file("Trash/info/item.trashinfo");
    tree.file("Trash/directorysizes", "1 1 item\n");
    FakeRights::install();
    const auto before = tree.snapshot();
    const AsOrdinaryUser user;
    ASSERT_TRUE(user);
    EXPECT_FALSE(NvAuthorization::synFastRemovePath(tree.path("Trash/files/item")));
    EXPECT_EQ(tree.snapshot(), before);
}

TEST(TrashRecord, GoesByThePrivilegedWayWhereTheNormalOneFails) {
    TestTree tree;
    tree.file("Trash/files/item");
    tree.file("Trash/info/item.trashinfo");
    tree.file("Trash/info/other.trashinfo");
    FakeRights &rights = FakeRights::install();
    auto &shared = NvAuthorization::shareNvAuthorization();
    ASSERT_TRUE(shared.allocAuthorization());
    {
        const AsOrdinaryUser user;
        EXPECT_TRUE(NvAuthorization::synFastRemovePath(tree.path("Trash/files/item")));
    }
    shared.freeAuthorization();
    EXPECT_EQ(rights.removals,
              (std::vector{tree.path("Trash/files/item"), tree.path("Trash/info/item.trashinfo")}));
    EXPECT_EQ(tree.snapshot("Trash/files").size(), 0u);
    EXPECT_EQ(tree.snapshot("Trash/info").size(), 1u);
}

TEST(TrashRecord, ABatchWritesEachFileOnce) {
    TestTree tree;
    for (const std::string trash : {"one/Trash", "two/Trash"}) {
        for (const char *name : {"a", "b", "c d"}) {
            tree.file(trash + "/files/" + name + "/file");
            tree.file(trash + "/info/" + name + ".trashinfo");
        }
        tree.file(trash + "/directorysizes", "1 1 a\n2 2 b\n3 3 c%20d\n4 4 elsewhere\n");
    }
    const auto remove = [&](const char *item) {
        EXPECT_TRUE(NvAuthorization::synFastRemovePath(tree.path(item)));
    };
    const auto sizes = [&](const char *trash) {
        return textOf(tree.path(std::string(trash) + "/Trash/directorysizes"));
    };
    const std::string whole = sizes("one");
    {
        const TrashBatch batch;
        remove("one/Trash/files/a");
        {
            const TrashBatch inner;
            remove("two/Trash/files/b");
            EXPECT_EQ(sizes("two"), whole);
        }
        EXPECT_EQ(sizes("two"), "1 1 a\n3 3 c%20d\n4 4 elsewhere\n");
        // Other threads have batches of their own.
        std::thread([&] { remove("two/Trash/files/a"); }).join();
        EXPECT_EQ(sizes("two"), "3 3 c%20d\n4 4 elsewhere\n");
        remove("one/Trash/files/c d");
        EXPECT_EQ(sizes("one"), whole);
        EXPECT_EQ(tree.snapshot("one/Trash/info").size(), 1u) << "all but the file goes at once";
    }
    EXPECT_EQ(sizes("one"), "2 2 b\n4 4 elsewhere\n");
    remove("one/Trash/files/b");
    EXPECT_EQ(sizes("one"), "4 4 elsewhere\n");
}

} // namespace
} // namespace brightsweep
