#include "core/TaskStopper.h"
#include "diskusage/NodeTreeOperator.h"
#include "support/FaultPlatform.h"
#include "support/TestTree.h"

#include <gtest/gtest.h>

namespace brightsweep {
namespace {

using test::TestTree;

// "name bytes(children)", in order.
std::string text(const FSNode &node) {
    std::string children;
    for (const auto &child : node.children)
        children += (children.empty() ? "" : " ") + text(*child);
    return node.displayName() + " " + std::to_string(node.size) +
           (node._isDirectory ? "(" + children + ")" : "");
}

struct Built {
    FSNode root;
    std::uint64_t total;
    Built(const std::filesystem::path &path, std::uint64_t limit)
        : root(path, true), total(NodeTreeOperator().getFistListTree(path, root, limit)) {
        root.size = total;
        root.decendingSort();
    }
};

TEST(ListMode, KeepsWhatIsAtLeastTheLimitAndCountsAll) {
    TestTree tree;
    tree.sparseFile("big/inner/large", 100);
    tree.sparseFile("big/inner/at the limit", 50);
    tree.sparseFile("big/inner/below", 49);
    tree.sparseFile("big/ends in a point.", 60);
    tree.sparseFile("many/one", 30);
    tree.sparseFile("many/two", 30);
    tree.sparseFile("little/one", 49);
    tree.sparseFile("file", 70);
    constexpr struct {
        std::uint64_t limit;
        const char *expected;
    } rows[] = {
        {50, "work 438(big 259(inner 199(large 100 at the limit 50) ends in a point. 60) file 70 "
             "many 60())"},
        {200, "work 438(big 259())"},
        {1000, "work 438()"},
    };
    for (const auto &row : rows)
        EXPECT_EQ(text(Built(tree.top(), row.limit).root), row.expected) << row.limit;
}

TEST(ListMode, AFileBecomesItsOwnChild) {
    TestTree tree;
    const auto file = tree.sparseFile("file", 70);
    const auto link = tree.link("link", tree.top());
    EXPECT_EQ(text(Built(file, 70).root), "file 70(file 70)");
    EXPECT_EQ(text(Built(file, 71).root), "file 0()");
    EXPECT_EQ(Built(link, 0).total, tree.top().native().size());
    EXPECT_EQ(Built(tree.path("nothing"), 0).total, 0u);
}

TEST(ListMode, AStopKeepsWhatWasFound) {
    TestTree tree;
    tree.sparseFile("file", 70);
    tree.sparseFile("folder/file", 30);
    TaskStopper &stopper = TaskStopper::sharedTaskStopper();
    test::FaultPlatform faults;
    faults.setFault([&](std::string_view call, const std::filesystem::path &) {
        if (call == "readBlock")
            stopper.setStopFlags(true);
        return std::error_code();
    });
    const Built stopped(tree.top(), 1);
    EXPECT_EQ(text(stopped.root), "work 70(file 70)");
    EXPECT_EQ(Built(tree.top(), 1).total, 0u);
    stopper.setStopFlags(false);
}

TEST(ListMode, SortsAndFreesTreesOfAnyDepth) {
    TestTree tree;
    tree.deepChain("deep", 5000);
    const Built built(tree.top(), 0);
    EXPECT_EQ(built.total, 0u);
    std::size_t depth = 0;
    for (const FSNode *node = &built.root; !node->children.empty(); node = node->children[0].get())
        ++depth;
    EXPECT_GE(depth, 5000u);
}

} // namespace
} // namespace brightsweep
