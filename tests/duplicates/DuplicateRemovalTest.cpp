// What goes and what stays, when the files are no longer what the search found.

#include "duplicates/DuplicateError.h"
#include "duplicates/SearchSupport.h"
#include "foundation/FileDescriptor.h"
#include "linux/RemovalError.h"
#include "support/TestEnvironment.h"
#include "support/TestTree.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>

#include <fstream>
#include <functional>

namespace brightsweep {
namespace {

using test::Searched;
using test::TestTree;
using Act = DuplicateRemoval::Act;
namespace fs = std::filesystem;

const std::string contents = test::bytes(300'000, 1);

// Removes one member while the others stay.
DuplicateRemoval::Outcome removeOne(Searched &found, const fs::path &path,
                                    DuplicateRemoval::Options options = {}) {
    auto &group = found.groupOf(path);
    const auto place = found.placeOf(path);
    group[place].goes = true;
    return DuplicateRemoval(found.root, options).act(group, place);
}

// One byte, with size and time put back.
void changeAByte(const fs::path &path) {
    struct stat status {};
    ASSERT_EQ(::stat(path.c_str(), &status), 0);
    {
        std::fstream file(path, std::ios::in | std::ios::out | std::ios::binary);
        file.seekp(1000);
        file.put('!');
    }
    const timespec times[] = {status.st_atim, status.st_mtim};
    ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
}

struct Between {
    const char *name;
    std::error_code reason; ///< none: the file goes
    std::function<void(TestTree &)> happens;
    bool openOther = false; ///< for writing
    bool openFile = false;
    bool mapped = false;
};

const Between everything[] = {
    {"nothing", {}, [](TestTree &) {}},
    {"the other is gone", DuplicateError::NoOther,
     [](TestTree &tree) { fs::remove(tree.path("b/other")); }},
    {"the other is a link now", DuplicateError::NoOther,
     [](TestTree &tree) {
         fs::remove(tree.path("b/other"));
         tree.link("b/other", tree.path("a/file"));
     }},
    {"the other is a hard link of it now", RemovalError::Changed,
     [](TestTree &tree) {
         fs::remove(tree.path("b/other"));
         tree.hardLink("b/other", tree.path("a/file"));
     }},
    {"the other is a new file", DuplicateError::OtherChanged,
     [](TestTree &tree) {
         fs::remove(tree.path("b/other"));
         tree.file("b/other", contents);
     }},
    {"the other has changed", DuplicateError::OtherChanged,
     [](TestTree &tree) { changeAByte(tree.path("b/other")); }},
    {"its folder is a link to the other's", DuplicateError::BehindLink,
     [](TestTree &tree) {
         fs::rename(tree.path("a"), tree.path("elsewhere"));
         tree.link("a", "elsewhere");
     }},
    {"the other's folder is a link to its own", DuplicateError::OtherChanged,
     [](TestTree &tree) {
         fs::rename(tree.path("b"), tree.path("elsewhere"));
         fs::copy_file(tree.path("a/file"), tree.path("a/other"));
         tree.link("b", "a");
     }},
    {"it has changed", RemovalError::Changed,
     [](TestTree &tree) { changeAByte(tree.path("a/file")); }},
    {"it is gone", std::make_error_code(std::errc::no_such_file_or_directory),
     [](TestTree &tree) { fs::remove(tree.path("a/file")); }},
    {"it is a directory now", RemovalError::Changed,
     [](TestTree &tree) {
         fs::remove(tree.path("a/file"));
         tree.file("a/file/deep", contents);
     }},
    {"it is being written", DuplicateError::BeingWritten, [](TestTree &) {}, false, true},
    {"the other is being written", DuplicateError::OtherBeingWritten, [](TestTree &) {}, true},
    {"it is mapped for writing", DuplicateError::BeingWritten, [](TestTree &) {}, false, true,
     true},
};

TEST(DuplicateRemoval, TakesNothingThatMightBeTheLastCopy) {
    for (const Between &between : everything) {
        for (const Act act : {Act::Remove, Act::Trash}) {
            SCOPED_TRACE(between.name);
            TestTree tree;
            const auto file = tree.file("a/file", contents);
            tree.file("b/other", contents);
            tree.file("c/unrelated", test::bytes(300'000, 2));
            auto found = test::searchFor(tree.top());
            ASSERT_EQ(found.groups.size(), 1u);
            between.happens(tree);
            FileDescriptor writer;
            if (between.openFile || between.openOther)
                writer = FileDescriptor(
                    ::open(tree.path(between.openOther ? "b/other" : "a/file").c_str(), O_RDWR));
            void *map = MAP_FAILED;
            if (between.mapped) {
                map = ::mmap(nullptr, 4096, PROT_READ | PROT_WRITE, MAP_SHARED, writer.get(), 0);
                writer.reset();
            }
            auto before = tree.snapshot();
            EXPECT_EQ(removeOne(found, file, {.act = act, .applies = false}).error, between.reason);
            EXPECT_EQ(tree.snapshot(), before);
            const auto outcome = removeOne(found, file, {.act = act});
            EXPECT_EQ(outcome.error, between.reason) << outcome.error.message();
            EXPECT_EQ(outcome.done, !between.reason);
            EXPECT_EQ(outcome.bytesFreed, act == Act::Trash || between.reason ? 0u : 303'104u);
            if (!between.reason)
                before.erase("a/file");
            EXPECT_EQ(tree.snapshot(), before);
            if (map != MAP_FAILED)
                ::munmap(map, 4096);
            test::removeTree(tree.top());
        }
    }
}

// Files that look the same to the search, and only to it.
TEST(DuplicateRemoval, TakesNoForgedCopy) {
    TestTree tree;
    const auto file = tree.file("file", contents);
    tree.file("forged", test::forgedTwin(contents));
    auto found = test::searchFor(tree.top());
    ASSERT_EQ(found.groups.size(), 1u) << "the pair is forged well";
    const auto before = tree.snapshot();
    EXPECT_EQ(removeOne(found, file).error, DuplicateError::Differs);
    EXPECT_EQ(tree.snapshot(), before);
    // A true copy that stays is enough.
    tree.file("true", contents);
    found = test::searchFor(tree.top());
    EXPECT_TRUE(removeOne(found, file).done);
}

TEST(DuplicateRemoval, CountsTheNamesOfAFile) {
    for (const bool applies : {false, true}) {
        TestTree tree;
        const auto name = tree.file("a/name", contents);
        const auto second = tree.hardLink("a/second", name);
        const auto third = tree.hardLink("b/third", name);
        const auto copy = tree.file("c/copy", contents);
        auto found = test::searchFor(tree.top());
        ASSERT_EQ(found.groups.size(), 1u);
        auto &group = found.groups[0];
        ASSERT_EQ(group.size(), 4u);
        DuplicateRemoval removal(found.root, {.applies = applies});
        const auto act = [&](const fs::path &path) {
            const auto place = found.placeOf(path);
            group[place].goes = true;
            return removal.act(group, place);
        };
        // Its own removals are no changes of somebody else's, and only the last name frees bytes.
        for (const auto &path : {name, second}) {
            const auto outcome = act(path);
            EXPECT_TRUE(outcome.done) << outcome.error.message();
            EXPECT_EQ(outcome.bytesFreed, 0u);
        }
        // Another name of the file that stays is enough, an alias is not.
        group[found.placeOf(copy)].goes = true;
        const auto last = removal.act(group, found.placeOf(copy));
        EXPECT_TRUE(last.done) << last.error.message();
        EXPECT_EQ(last.bytesFreed, 303'104u);
        EXPECT_EQ(act(third).error, DuplicateError::NoOther);
        EXPECT_TRUE(removal.act(group, found.placeOf(third), true).done);
        EXPECT_EQ(tree.exists("b/third"), !applies);
        test::removeTree(tree.top());
    }
}

TEST(DuplicateRemoval, TellsAnotherNameFromAnAlias) {
    TestTree tree;
    const auto name = tree.file("a/name", contents);
    tree.hardLink("b/second", name);
    auto found = test::searchFor(tree.top());
    ASSERT_EQ(found.groups.size(), 1u);
    {
        // Now the second path leads to the first name.
        fs::rename(tree.path("b"), tree.path("elsewhere"));
        fs::rename(tree.path("elsewhere/second"), tree.path("elsewhere/name"));
        auto group = found.groups[0];
        for (auto &member : group) {
            struct stat status {};
            ::stat(name.c_str(), &status);
            member.searched.changed =
                status.st_ctim.tv_sec * 1'000'000'000 + status.st_ctim.tv_nsec;
            if (member.path != name)
                member.path = tree.path("b/name");
        }
        tree.link("b", "a");
        const Searched aliased{found.root, {group}};
        Searched copy = aliased;
        EXPECT_EQ(removeOne(copy, name).error, DuplicateError::SameFile);
        fs::remove(tree.path("b"));
        fs::rename(tree.path("elsewhere"), tree.path("b"));
        copy = aliased;
        EXPECT_TRUE(removeOne(copy, name).done);
    }
}

TEST(DuplicateRemoval, ComparesBundlesWhole) {
    struct Row {
        const char *name;
        std::error_code reason;
        std::function<void(TestTree &)> happens;
    };
    const Row rows[] = {
        {"nothing", {}, [](TestTree &) {}},
        {"other layout", DuplicateError::Differs,
         [](TestTree &tree) {
             fs::rename(tree.path("B.app/Contents/bin"), tree.path("B.app/Contents/sbin"));
         }},
        {"an empty folder more", DuplicateError::Differs,
         [](TestTree &tree) { tree.directory("B.app/more"); }},
        {"other link", DuplicateError::Differs,
         [](TestTree &tree) {
             fs::remove(tree.path("B.app/link"));
             tree.link("B.app/link", "Contents/Bin");
         }},
        {"a byte of the other", DuplicateError::Differs,
         [](TestTree &tree) { changeAByte(tree.path("B.app/Contents/bin")); }},
        {"the same byte in both", RemovalError::Changed,
         [](TestTree &tree) {
             changeAByte(tree.path("A.app/Contents/bin"));
             changeAByte(tree.path("B.app/Contents/bin"));
         }},
        {"a new folder", DuplicateError::OtherChanged,
         [](TestTree &tree) {
             fs::rename(tree.path("B.app"), tree.path("old"));
             fs::copy(tree.path("old"), tree.path("B.app"),
                      fs::copy_options::recursive | fs::copy_options::copy_symlinks);
         }},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        TestTree tree;
        for (const std::string bundle : {"A.app", "B.app"}) {
            tree.file(bundle + "/Contents/bin", contents);
            tree.file(bundle + "/Contents/empty", "");
            tree.link(bundle + "/link", "Contents/bin");
        }
        tree.file("outside", "kept");
        auto found = test::searchFor(tree.top());
        ASSERT_EQ(found.groups.size(), 1u);
        row.happens(tree);
        const auto before = tree.snapshot("B.app");
        const auto outcome = removeOne(found, tree.path("A.app"));
        EXPECT_EQ(outcome.error, row.reason) << outcome.error.message();
        EXPECT_EQ(tree.exists("A.app/Contents/bin"), bool(row.reason));
        EXPECT_EQ(outcome.bytesFreed, row.reason ? 0u : 303'104u);
        EXPECT_EQ(tree.snapshot("B.app"), before);
        test::removeTree(tree.top());
    }
}

} // namespace
} // namespace brightsweep
