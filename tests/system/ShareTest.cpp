// Sharing blocks on real file systems.

#include "duplicates/DuplicateError.h"
#include "duplicates/SearchSupport.h"
#include "support/NeedsRoot.h"
#include "support/TestEnvironment.h"
#include "support/TestTree.h"
#include "system/PrivateMachine.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/wait.h>

#include <csignal>
#include <cstdlib>
#include <optional>

namespace brightsweep::test {
namespace {

using Act = DuplicateRemoval::Act;
constexpr std::size_t large =
    40'000'123; // three calls of the kernel, and no whole block at the end

class Sharing : public testing::TestWithParam<const char *> {
protected:
    void SetUp() override {
        needRoot();
        // The volumes of this machine, which nobody else sees.
        ::unsetenv("BRIGHTSWEEP_SYSTEM_ROOT");
        auto &machine = PrivateMachine::current();
        const std::string type = GetParam();
        const std::string disk = machine.makeDisk("share", type);
        machine.mountDisk(disk, place, type);
        tree.emplace(place);
    }
    void TearDown() override { PrivateMachine::current().clear(); }

    std::uint64_t freeBytes() const {
        const FileDescriptor top(::open(place.c_str(), O_RDONLY | O_DIRECTORY));
        struct statvfs status {};
        EXPECT_EQ(::syncfs(top.get()), 0);
        EXPECT_EQ(::fstatvfs(top.get(), &status), 0);
        return std::uint64_t(status.f_bfree) * status.f_frsize;
    }
    // Where the blocks of a file are.
    std::string extents(const std::string &name) const {
        return shell("filefrag -v " + quoted(tree->path(name)) +
                     " | awk '$1 ~ /^[0-9]+:$/ {print $4 $5 $6}'")
            .output;
    }
    DuplicateRemoval::Outcome share(Searched &found, const std::string &name, bool applies = true) {
        auto &group = found.groupOf(tree->path(name));
        const auto index = found.placeOf(tree->path(name));
        group[index].goes = true;
        return DuplicateRemoval(found.root, {.act = Act::Share, .applies = applies})
            .act(group, index);
    }

    const std::filesystem::path place = "/media/share";
    std::optional<TestTree> tree;
};

TEST_P(Sharing, LeavesNamesAndContentsAndGivesTheSpaceBack) {
    const std::string contents = bytes(large, 1);
    for (const char *name : {"kept", "one", "two"})
        tree->file(name, contents);
    tree->file("forged", forgedTwin(contents));
    tree->mode("one", 0600);
    freeBytes();
    auto found = searchFor(place);
    ASSERT_EQ(found.groups.size(), 1u);
    const auto names = tree->snapshot();
    const std::uint64_t before = freeBytes();
    const auto wouldBe = share(found, "one", false);
    EXPECT_TRUE(wouldBe.done) << wouldBe.error.message();
    EXPECT_EQ(before, freeBytes());
    for (const char *name : {"one", "two", "forged"})
        found.groups[0][found.placeOf(tree->path(name))].goes = true;
    std::uint64_t freed = 0;
    for (const char *name : {"one", "two"}) {
        const auto outcome = share(found, name);
        EXPECT_TRUE(outcome.done) << outcome.error.message();
        EXPECT_GE(outcome.bytesFreed, large - 8192) << name;
        freed += outcome.bytesFreed;
    }
    EXPECT_EQ(tree->snapshot(), names) << "names, modes and contents";
    const std::uint64_t gained = freeBytes() - before;
    constexpr std::uint64_t records = 2 << 20; // of the file system's own
    EXPECT_NEAR(double(gained), double(freed), double(records));
    EXPECT_EQ(extents("one"), extents("kept"));
    EXPECT_EQ(extents("two"), extents("kept"));
    EXPECT_NE(extents("kept"), "");
    // What shares already gives nothing back, shared or removed.
    auto again = searchFor(place);
    EXPECT_EQ(share(again, "one").bytesFreed, 0u);
    auto &group = again.groupOf(tree->path("two"));
    const auto index = again.placeOf(tree->path("two"));
    group[index].goes = true;
    const auto removed = DuplicateRemoval(again.root, {}).act(group, index);
    EXPECT_TRUE(removed.done) << removed.error.message();
    EXPECT_EQ(removed.bytesFreed, 0u);
}

TEST_P(Sharing, RefusesWhatOnlyLooksEqual) {
    const std::string contents = bytes(large, 1);
    tree->file("kept", contents);
    tree->file("forged", forgedTwin(contents));
    auto found = searchFor(place);
    ASSERT_EQ(found.groups.size(), 1u);
    const auto before = tree->snapshot();
    EXPECT_EQ(share(found, "forged").error, DuplicateError::Differs);
    EXPECT_EQ(tree->snapshot(), before);
}

TEST_P(Sharing, IsNoDangerWhenItIsKilled) {
    const std::string contents = bytes(large, 1);
    for (const char *name : {"kept", "one"})
        tree->file(name, contents);
    freeBytes();
    auto found = searchFor(place);
    const auto before = tree->snapshot();
    for (const int microseconds : {500, 2'000, 8'000, 20'000}) {
        const pid_t child = ::fork();
        if (child == 0) {
            share(found, "one");
            ::pause();
        }
        ::usleep(useconds_t(microseconds)); // the moment itself is what is tried
        ::kill(child, SIGKILL);
        ::waitpid(child, nullptr, 0);
        EXPECT_EQ(tree->snapshot(), before) << microseconds;
    }
}

INSTANTIATE_TEST_SUITE_P(FileSystems, Sharing, testing::Values("btrfs", "xfs"),
                         [](const auto &type) { return std::string(type.param); });

using SharingReasons = Sharing;

TEST_P(SharingReasons, AreTold) {
    const std::string type = GetParam();
    tree->file("kept", bytes(100'000, 1));
    tree->file("one", bytes(100'000, 1));
    std::optional<std::error_code> expected;
    if (type == "ext4") {
        expected = DuplicateError::CannotShare;
    } else {
        shell("rm " + quoted(tree->path("one")) + "; touch " + quoted(tree->path("one")) +
              "; chattr +C " + quoted(tree->path("one")));
        tree->file("one", bytes(100'000, 1));
        expected = DuplicateError::NeverCopiedOnWrite;
    }
    auto found = searchFor(place);
    ASSERT_EQ(found.groups.size(), 1u);
    tree->file("x.app/Contents/file", "in a bundle");
    const DuplicateRemoval::Member bundle{
        tree->path("x.app"), {.kind = SearchedFile::Kind::Bundle}, false};
    for (const auto &group : {found.groups[0], {bundle}})
        EXPECT_EQ(sharingRefusal(group) == DuplicateError::CannotShare, type == "ext4");
    EXPECT_EQ(share(found, "one").error, *expected);
    ASSERT_EQ(::mount(nullptr, place.c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr), 0);
    EXPECT_EQ(share(found, "one").error,
              type == "ext4" ? *expected : std::error_code(DuplicateError::ReadOnly));
}

INSTANTIATE_TEST_SUITE_P(FileSystems, SharingReasons, testing::Values("ext4", "btrfs"),
                         [](const auto &type) { return std::string(type.param); });

} // namespace
} // namespace brightsweep::test
