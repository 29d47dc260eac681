#include "results/FileClasses.h"
#include "results/SimpleTreeNode.h"

#include <QVariantList>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace brightsweep::test {
namespace {

using testing::ElementsAre;

std::shared_ptr<SimpleTreeNode> leaf(const char *name, std::uint64_t size, int day) {
    auto data = SimpleNodeData::leafDataWithName(name);
    data->setFileSize(size);
    data->setModificationDate(FileTime(std::chrono::hours(24 * day)));
    return SimpleTreeNode::nodeWithData(data);
}

std::vector<std::string> names(const TreeNode &node) {
    std::vector<std::string> all;
    for (const auto &child : node.children()) {
        all.push_back(child->nodeData()->description());
        for (const auto &grandchild : child->children())
            all.push_back("." + grandchild->nodeData()->description());
    }
    return all;
}

std::shared_ptr<SimpleTreeNode> sample() {
    auto root = SimpleTreeNode::nodeWithData(SimpleNodeData::groupDataWithName("Root"));
    for (const std::uint64_t size : {10, 30, 20}) {
        auto group = SimpleTreeNode::nodeWithData(
            SimpleNodeData::groupDataWithName("g" + std::to_string(size)));
        group->data().setFileSize(size);
        group->insertChild(leaf("b", size, 1), 0);
        group->insertChild(leaf("B", size + 1, 3), 1);
        group->insertChild(leaf("a", size + 2, 2), 0);
        root->insertChild(group, root->numberOfChildren());
    }
    return root;
}

TEST(Tree, SortsAllLevels) {
    const auto root = sample();
    root->decendingSortSize();
    EXPECT_THAT(names(*root), ElementsAre("g30", ".a", ".B", ".b", "g20", ".a", ".B", ".b", "g10",
                                          ".a", ".B", ".b"));
    root->acendingSortName();
    EXPECT_THAT(names(*root), ElementsAre("g10", ".B", ".a", ".b", "g20", ".B", ".a", ".b", "g30",
                                          ".B", ".a", ".b"));
    // Groups have no date and stay where they are.
    root->decendingSortDate();
    EXPECT_THAT(names(*root), ElementsAre("g10", ".B", ".a", ".b", "g20", ".B", ".a", ".b", "g30",
                                          ".B", ".a", ".b"));
    root->acendingSortDate();
    EXPECT_EQ(names(*root)[1], ".b");
}

TEST(Tree, ANodeKnowsTheParentThatTookItInLast) {
    const auto root = sample();
    const auto first = root->firstChild();
    {
        TreeNode second;
        second.insertChild(first, 0);
        EXPECT_EQ(first->nodeParent(), &second);
    }
    EXPECT_EQ(first->nodeParent(), nullptr);
    EXPECT_EQ(root->indexOfChild(first.get()), 0);
    root->_removeChildrenIdenticalTo({first});
    EXPECT_EQ(root->indexOfChild(first.get()), -1);
    EXPECT_EQ(root->childAtIndex(2), nullptr);
}

TEST(FileClasses, OddMembers) {
    const std::pair<const char *, int> cases[] = {{"", 0},    {"TXT", 1},  {"xml", 1}, {"acc", 2},
                                                  {"ogg", 3}, {"tar", 4},  {"gz", 6},  {"eps", 5},
                                                  {"APP", 6}, {"\xff", 6}, {"key", 1}};
    for (const auto &[extension, type] : cases)
        EXPECT_EQ(fileTypeOfExtension(extension), type) << extension;
}

} // namespace
} // namespace brightsweep::test
