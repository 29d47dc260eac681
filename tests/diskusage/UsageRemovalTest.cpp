#include "diskusage/UsageRemoval.h"
#include "linux/RemovalError.h"
#include "platform/Platform.h"
#include "support/TestTree.h"

#include <gtest/gtest.h>

#include <fstream>

namespace brightsweep {
namespace {

using test::TestTree;

class UsageRemovalTest : public testing::Test {
protected:
    FileOperations &files() { return *Platform::current().files; }
    UsageItem look(const std::string &name, FreedBytes *freed = nullptr) {
        const auto target =
            UsageRemoval::targetOf(*files().rememberRoot(tree.top()), tree.path(name));
        return *lookAtItem(*target, *files().openItem(*target), {100, nullptr, freed});
    }
    std::string act(const UsageItem &item) {
        const auto outcome = removal.act(item);
        return outcome.done                             ? "done"
               : outcome.wasGone                        ? "gone"
               : outcome.error == RemovalError::Changed ? "changed"
                                                        : outcome.error.message();
    }
    TestTree tree;
    UsageRemoval removal{{}};
};

TEST_F(UsageRemovalTest, TakesOnlyWhatWasSeen) {
    for (const char *name : {"same", "written", "replaced", "grown/old", "shrunk/a", "shrunk/b",
                             "swapped/a", "deep/er/old", "nested/file"})
        tree.file(name);
    const struct {
        const char *name;
        std::function<void()> meanwhile;
        const char *outcome;
    } rows[] = {
        {"same", [] {}, "done"},
        {"written", [&] { std::ofstream(tree.path("written"), std::ios::app) << "more"; },
         "changed"},
        {"replaced",
         [&] {
             std::filesystem::rename(tree.path("replaced"), tree.path("aside"));
             tree.file("replaced");
         },
         "changed"},
        {"grown", [&] { tree.file("grown/new"); }, "changed"},
        {"deep", [&] { tree.file("deep/er/new"); }, "changed"},
        {"shrunk", [&] { std::filesystem::remove(tree.path("shrunk/b")); }, "done"},
        {"swapped",
         [&] {
             std::filesystem::remove(tree.path("swapped/a"));
             tree.file("swapped/b");
         },
         "changed"},
        {"nested", [&] { removal.act(look("nested/file")); }, "done"},
    };
    for (const auto &row : rows) {
        const UsageItem seen = look(row.name);
        row.meanwhile();
        EXPECT_EQ(act(seen), row.outcome) << row.name;
        EXPECT_EQ(tree.exists(row.name), std::string(row.outcome) != "done") << row.name;
    }
    EXPECT_TRUE(tree.exists("grown/old") && tree.exists("deep/er/old") && tree.exists("aside"));
    const UsageItem gone = look("replaced");
    std::filesystem::remove(tree.path("replaced"));
    EXPECT_EQ(act(gone), "gone");
}

TEST_F(UsageRemovalTest, ANameMoreFreesNothing) {
    const std::string block(4096, 'x');
    tree.file("in/a", block);
    tree.hardLink("in/b", tree.path("in/a"));
    tree.file("in/single", block);
    tree.hardLink("out", tree.path("in/a"));
    FreedBytes freed;
    const UsageItem folder = look("in", &freed);
    EXPECT_EQ(folder.below.entries, 3u);
    EXPECT_EQ(folder.below.bytes, 3 * 4096u);
    EXPECT_EQ(freed.sum(), 4096u);
    EXPECT_EQ(freed.kept(), 4096u);
    const UsageItem out = look("out", &freed);
    EXPECT_EQ(freed.sum(), 2 * 4096u);
    EXPECT_EQ(freed.kept(), 0u);
    EXPECT_EQ(act(folder), "done");
    EXPECT_EQ(removal.bytesFreed(), 4096u);
    // The names that went have changed its time, and that is no change of the file.
    EXPECT_EQ(act(out), "done");
    EXPECT_EQ(removal.bytesFreed(), 2 * 4096u);
}

} // namespace
} // namespace brightsweep
