#include "removal/MoveToTrash.h"

#include "linux/RemovalError.h"
#include "platform/StandardDirectories.h"
#include "removal/FakeRights.h"
#include "removal/NvAuthorization.h"
#include "removal/TrashRecord.h"
#include "support/Removals.h"

#include <gtest/gtest.h>

#include <sys/mount.h>

#include <regex>

namespace brightsweep {
namespace {

using test::AsOrdinaryUser;
using test::TestTree;
using test::textOf;

std::error_code throwAway(const std::filesystem::path &path, MoveToTrash &trash) {
    const auto item = Platform::current().files->openItem(*NvAuthorization::targetOf(path));
    return item ? trash.move(*item) : item.error();
}

class HomeTrash : public testing::Test {
protected:
    TestTree tree;
    TestTree home{test::TestEnvironment::current().home()};
    MoveToTrash trash;
    std::string record(const std::string &name) const {
        return textOf(home.path(".local/share/Trash/info/" + name + ".trashinfo"));
    }
};

TEST_F(HomeTrash, KeepsEveryItemWithItsRecord) {
    const std::string longName(255, 'l');
    // One byte of a name in a way that is no text, a line end, and what is told by percent signs.
    const std::string hostile = "a\nb%\xff \xc3\xa4";
    struct Row {
        std::string name, inTrash, encoded;
    };
    const Row rows[] = {{"one/same", "same", "one/same"},
                        {"two/same", "same.2", "two/same"},
                        {hostile, hostile, "a%0Ab%25%FF%20%C3%A4"},
                        {longName, std::string(245, 'l'), longName},
                        {"three/same", "same.3", "three/same"}};
    const auto record0 = home.file(".local/share/Trash/info/two.trashinfo", "kept");
    home.file(".local/share/Trash/files/orphan", "kept");
    for (const Row &row : rows) {
        tree.file(row.name, row.name);
        EXPECT_FALSE(throwAway(tree.path(row.name), trash)) << row.name;
        EXPECT_FALSE(tree.exists(row.name));
        EXPECT_EQ(textOf(home.path(".local/share/Trash/files/" + row.inTrash)), row.name);
        EXPECT_TRUE(std::regex_match(
            record(row.inTrash),
            std::regex("\\[Trash Info\\]\nPath=" + tree.top().native() + "/" + row.encoded +
                       "\nDeletionDate=\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d\n")))
            << record(row.inTrash);
    }
    // What is there already stays, with or without a record.
    tree.link("orphan", "nowhere");
    tree.file("last/two");
    EXPECT_FALSE(throwAway(tree.path("orphan"), trash));
    EXPECT_FALSE(throwAway(tree.path("last/two"), trash));
    EXPECT_EQ(textOf(home.path(".local/share/Trash/files/orphan")), "kept");
    EXPECT_EQ(textOf(record0), "kept");
    EXPECT_TRUE(home.exists(".local/share/Trash/info/two.2.trashinfo"));
    EXPECT_FALSE(home.exists(".local/share/Trash/info/orphan.trashinfo"));
    EXPECT_TRUE(std::filesystem::is_symlink(home.path(".local/share/Trash/files/orphan.2")));
}

TEST_F(HomeTrash, TellsTheSizesOfDirectories) {
    home.file(".local/share/Trash/directorysizes", "1 1 other\n2 2 folder\n");
    tree.file("folder/sub/file", std::string(10'000, 'x'));
    tree.hardLink("folder/again", tree.path("folder/sub/file"));
    tree.sparseFile("folder/holes", 1u << 30);
    const auto stored = [&](const char *name) {
        struct stat status {};
        ::lstat(tree.path(name).c_str(), &status);
        return std::uint64_t(status.st_blocks) * 512;
    };
    const auto size = stored("folder") + stored("folder/sub") + stored("folder/sub/file") +
                      stored("folder/holes");
    tree.directory("second");
    {
        const TrashBatch batch;
        EXPECT_FALSE(throwAway(tree.path("folder"), trash));
        EXPECT_FALSE(throwAway(tree.path("second"), trash));
        EXPECT_TRUE(
            NvAuthorization::synFastRemovePath(home.path(".local/share/Trash/files/second")));
    }
    struct stat record {};
    ASSERT_EQ(::stat(home.path(".local/share/Trash/info/folder.trashinfo").c_str(), &record), 0);
    EXPECT_EQ(textOf(home.path(".local/share/Trash/directorysizes")),
              "1 1 other\n" + std::to_string(size) + " " + std::to_string(record.st_mtim.tv_sec) +
                  " folder\n");
}

TEST_F(HomeTrash, LeavesWhatItRefusesWhereItIs) {
    home.directory(".local/share/Trash/info");
    home.file(".local/share/Trash/files/thrown/deep/file");
    tree.directory("foreign");
    tree.file("foreign/file");
    tree.file("changed");
    auto &files = *Platform::current().files;
    const auto changed = files.openItem(*NvAuthorization::targetOf(tree.path("changed")));
    ASSERT_TRUE(changed);
    std::filesystem::rename(tree.path("changed"), tree.path("elsewhere"));
    tree.file("changed", "another");
    const auto before = tree.snapshot();
    const auto trashBefore = home.snapshot();

    EXPECT_EQ(trash.move(*changed), RemovalError::Changed);
    EXPECT_EQ(throwAway(home.path(".local/share/Trash/files/thrown/deep"), trash),
              RemovalError::InTrash);
    EXPECT_EQ(throwAway(home.path(".local/share/Trash"), trash), RemovalError::ProtectedPlace);
    EXPECT_EQ(tree.snapshot(), before);
    EXPECT_EQ(home.snapshot(), trashBefore);
    {
        const AsOrdinaryUser user;
        ASSERT_TRUE(user);
        MoveToTrash own;
        EXPECT_EQ(throwAway(tree.path("foreign/file"), own), std::errc::permission_denied);
    }
    EXPECT_EQ(tree.snapshot(), before);
    // A trash that is a link to a folder of somebody else's is none.
    std::filesystem::remove_all(home.path(".local/share/Trash"));
    tree.directory("others");
    ASSERT_EQ(::chown(tree.path("others").c_str(), 1, 1), 0);
    home.link(".local/share/Trash", tree.path("others"));
    EXPECT_EQ(throwAway(tree.path("foreign/file"), trash), RemovalError::NoTrash);
    EXPECT_TRUE(tree.exists("foreign/file"));
}

// Where nothing can be renamed to, nothing is copied.
TEST_F(HomeTrash, NeverCopiesToAnotherVolume) {
    test::needRoot();
    const auto place = tree.directory("volume");
    ASSERT_EQ(::mount("none", place.c_str(), "tmpfs", 0, nullptr), 0);
    const auto file = tree.file("volume/file");
    const auto item = Platform::current().files->openItem(*NvAuthorization::targetOf(file));
    for (const bool make : {false, true})
        EXPECT_EQ(Platform::current().files->trashOf(*item->folder, make).error(),
                  RemovalError::NoTrash);
    EXPECT_TRUE(trash.move(*item));
    EXPECT_EQ(tree.snapshot("volume").size(), 1u);
    ::umount2(place.c_str(), MNT_DETACH);
    // The check makes nothing.
    const auto here = tree.file("here");
    const auto own = Platform::current().files->openItem(*NvAuthorization::targetOf(here));
    EXPECT_FALSE(trash.check(*own));
    EXPECT_FALSE(home.exists(".local/share/Trash"));
    EXPECT_FALSE(trash.move(*own));
    EXPECT_EQ(std::filesystem::status(home.path(".local/share/Trash/info")).permissions(),
              std::filesystem::perms(0700));
}

} // namespace
} // namespace brightsweep
