#include "duplicates/DuplicateSelection.h"
#include "duplicates/DuplicateNodes.h"

#include "duplicates/SearchedFile.h"
#include "results/SimpleTreeNode.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <random>

namespace brightsweep {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct File {
    const char *path;
    int day;
    SearchedFile::Kind kind = SearchedFile::Kind::File;
};

TreeNode::Pointer groupOf(const std::vector<File> &files) {
    auto group = SimpleTreeNode::nodeWithData(SimpleNodeData::groupDataWithName("group"));
    for (const File &file : files) {
        auto data =
            std::make_shared<DuplicateLeaf>(file.path, SearchedFile{.kind = file.kind, .size = 10});
        data->setFileSize(10);
        data->setPlace(std::uint32_t(group->numberOfChildren()));
        data->setModificationDate(FileTime(std::chrono::days(file.day)));
        group->insertChild(SimpleTreeNode::nodeWithData(std::move(data)),
                           group->numberOfChildren());
    }
    DuplicateSelection::refreshGroup(*group);
    return group;
}

std::vector<std::string> namesOf(const TreeNode::List &leaves) {
    std::vector<std::string> names;
    for (const auto &leaf : leaves)
        names.push_back(dataOf(*leaf).name());
    return names;
}

TEST(KeepRule, KeepsOneFileOfAGroup) {
    constexpr auto link = SearchedFile::Kind::Link;
    const std::vector<File> files = {
        {"/long/a", 3}, {"/b", 9, link}, {"/cc", 1}, {"/d/new", 4}, {"/dd", 1}};
    const auto group = groupOf(files);
    const std::pair<KeepRule, const char *> rows[] = {{KeepRule::Last, "/dd"},
                                                      {KeepRule::First, "/long/a"},
                                                      {KeepRule::Newest, "/d/new"},
                                                      {KeepRule::Oldest, "/dd"},
                                                      {KeepRule::ShortestPath, "/dd"}};
    for (const auto &[rule, path] : rows) {
        // Whatever order is shown.
        for (void (TreeNode::*sort)() :
             {&TreeNode::acendingSortName, &TreeNode::decendingSortDate}) {
            (group.get()->*sort)();
            EXPECT_EQ(dataOf(*leafToKeep(*group, rule)).name(), path);
        }
    }
}

TEST(DuplicateSelection, ProtectsTheLastFileOfAGroup) {
    const auto group = groupOf({{"/a", 1}, {"/b", 2}, {"/c", 3}});
    const auto a = group->childAtIndex(0);
    const auto b = group->childAtIndex(1);
    const auto c = group->childAtIndex(2);
    const auto state = [&] {
        return std::to_string(dataOf(*group).selectNum()) + ' ' + dataOf(*group).showSelectNumStr();
    };
    DuplicateSelection selection;
    selection.clickGroup(group);
    EXPECT_THAT(namesOf(selection.allSelectNumArr()), ElementsAre("/a", "/b"));
    EXPECT_EQ(state(), "2 2/3");
    EXPECT_FALSE(selection.tickLeaf(c));
    EXPECT_EQ(dataOf(*c).selectNum(), 0);
    selection.tickLastLeaf(c);
    EXPECT_EQ(state(), "1 3/3");
    EXPECT_EQ(selection.bytes(), 30u);
    selection.untickLeaf(a);
    EXPECT_EQ(state(), "2 2/3");
    EXPECT_FALSE(selection.tickLeaf(a));
    selection.clickGroup(group);
    EXPECT_EQ(state(), "0 0/3");
    EXPECT_TRUE(selection.isEmpty());
    EXPECT_TRUE(selection.tickLeaf(c));
    EXPECT_EQ(state(), "2 1/3");
    // Ticking it again asks nothing.
    EXPECT_TRUE(selection.tickLeaf(c));
    selection.clickGroup(group);
    EXPECT_EQ(state(), "0 0/3");
}

TEST(DuplicateSelection, TicksAllAndNone) {
    auto list = SimpleTreeNode::nodeWithData(SimpleNodeData::groupDataWithName("Root"));
    DuplicateSelection selection;
    selection.setAllSelectOrNoSelect(*list, true);
    const auto two = groupOf({{"/a", 1}, {"/b", 2}});
    list->insertChild(two, 0);
    list->insertChild(groupOf({{"/c", 1}, {"/d", 2}, {"/e", 2}}), 1);
    list->insertChild(groupOf({{"/f", 1}, {"/g", 2}}), 2);
    selection.tickLastLeaf(two->childAtIndex(1));
    selection.setAllSelectOrNoSelect(*list, true);
    EXPECT_THAT(namesOf(selection.allSelectNumArr()), ElementsAre("/a", "/c", "/d", "/f"));
    selection.undo();
    EXPECT_THAT(namesOf(selection.allSelectNumArr()), ElementsAre("/b"));
    EXPECT_FALSE(selection.canUndo());
    selection.setAllSelectOrNoSelect(*list, false);
    EXPECT_THAT(selection.allSelectNumArr(), IsEmpty());
    // The number of groups in place of the files'.
    EXPECT_EQ(dataOf(*two).showSelectNumStr(), "0/3");
}

TEST(DuplicateSelection, TicksByRule) {
    const TreeNode::List groups = {groupOf({{"/x/a", 3}, {"/y/b", 2}, {"/x/c", 1}}),
                                   groupOf({{"/z/d", 1}, {"/y/e", 2}})};
    DuplicateSelection selection;
    const auto ticked = [&] { return namesOf(selection.allSelectNumArr()); };
    selection.tickAllBut(groups, KeepRule::Newest, {});
    EXPECT_THAT(ticked(), ElementsAre("/y/b", "/x/c", "/z/d"));
    selection.undo();
    EXPECT_THAT(ticked(), IsEmpty());
    // Files below another folder of that beginning are not below it; a group without any is left.
    selection.tickAllOutside(groups, "/x", {});
    EXPECT_THAT(ticked(), ElementsAre("/y/b"));
    selection.tickAllOutside(groups, "/y/", {});
    EXPECT_THAT(ticked(), ElementsAre("/x/a", "/x/c", "/z/d"));
    // What a filter hides is not ticked, and what the rule keeps is unticked all the same.
    selection.tickLastLeaf(groups[0]->childAtIndex(1));
    const auto shown = [](const TreeNode &leaf) { return dataOf(leaf).name().starts_with("/x"); };
    selection.tickAllBut(groups, KeepRule::Last, shown);
    EXPECT_THAT(ticked(), ElementsAre("/x/a", "/z/d", "/y/b"));
    for (const auto &group : groups)
        selection.setTicked({group}, false, shown);
    EXPECT_THAT(ticked(), IsEmpty());
    selection.setTicked(groups, true, shown);
    EXPECT_THAT(ticked(), ElementsAre("/x/a"));
    selection.undo();
    selection.keepOnly(groups[0]->childAtIndex(1), shown);
    EXPECT_THAT(ticked(), ElementsAre("/x/a", "/x/c"));
}

// No series of bulk ticks, undone or not, ever ticks a whole group.
TEST(DuplicateSelection, NeverTakesAWholeGroupByItself) {
    const auto seed = std::random_device{}();
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    TreeNode::List groups;
    auto list = SimpleTreeNode::nodeWithData(SimpleNodeData::groupDataWithName("Root"));
    for (int i = 0; i < 5; ++i) {
        groups.push_back(groupOf({{"/x/a", 3}, {"/y/b", 2}, {"/x/c", 1}, {"/z/d", 1}}));
        list->insertChild(groups.back(), i);
    }
    DuplicateSelection selection;
    for (int step = 0; step < 5'000; ++step) {
        const auto shown = [&](const TreeNode &) { return random() % 3 > 0; };
        const auto &group = groups[random() % groups.size()];
        switch (random() % 8) {
        case 0:
            selection.tickAllBut(groups, keepRuleNames[random() % keepRuleNames.size()].rule,
                                 shown);
            break;
        case 1:
            selection.tickAllOutside(groups, random() % 2 ? "/x" : "/y", shown);
            break;
        case 2:
            selection.setAllSelectOrNoSelect(*list, random() % 2 == 0, shown);
            break;
        case 3:
            selection.clickGroup(group, shown);
            break;
        case 4:
            selection.tickLeaf(group->childAtIndex(std::int32_t(random() % 4)));
            break;
        case 5:
            selection.undo();
            break;
        case 6:
            selection.setTicked({group, group->childAtIndex(0), groups[0]}, random() % 2, shown);
            break;
        case 7:
            selection.keepOnly(group->childAtIndex(std::int32_t(random() % 4)), shown);
            break;
        }
        std::size_t ticked = 0;
        for (const auto &each : groups) {
            EXPECT_NE(dataOf(*each).selectNum(), 1);
            for (const auto &leaf : each->children())
                ticked += std::size_t(dataOf(*leaf).selectNum());
        }
        ASSERT_EQ(ticked, selection.count());
        ASSERT_EQ(selection.allSelectNumArr().size(), ticked);
    }
}

} // namespace
} // namespace brightsweep
