#include "duplicates/DuplicateSelection.h"

#include "duplicates/DuplicateNodes.h"
#include "foundation/PathBytes.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <unordered_set>
#include <utility>

namespace brightsweep {

namespace {

constexpr std::size_t gapsWorthClosing = 4'096;

std::string countText(std::size_t ticked, std::size_t all) {
    return std::to_string(ticked) + '/' + std::to_string(all);
}

bool hasRow(const TreeNode &group, const DuplicateSelection::IsShown &isShown) {
    for (std::int32_t i = 0; isShown && i < group.numberOfChildren(); ++i) {
        if (isShown(*group.childAtIndex(i)))
            return true;
    }
    return !isShown;
}

std::size_t tickedIn(const TreeNode &group) {
    std::size_t ticked = 0;
    for (std::int32_t i = 0; i < group.numberOfChildren(); ++i)
        ticked += leafOf(*group.childAtIndex(i)).selectNum() == 1 ? 1 : 0;
    return ticked;
}

} // namespace

TreeNode::List DuplicateSelection::allSelectNumArr() const {
    TreeNode::List ticked;
    ticked.reserve(m_count);
    std::copy_if(m_ticked.begin(), m_ticked.end(), std::back_inserter(ticked),
                 [](const auto &leaf) { return leaf != nullptr; });
    return ticked;
}

void DuplicateSelection::set(const TreeNode::Pointer &node, bool ticked) {
    DuplicateLeaf &leaf = leafOf(*node);
    leaf.setSelectNum(ticked ? 1 : 0);
    const std::size_t place = leaf.selectionPlace();
    const bool isThere = place < m_ticked.size() && m_ticked[place] == node;
    if (ticked && !isThere) {
        leaf.setSelectionPlace(m_ticked.size());
        m_ticked.push_back(node);
        ++m_count;
        m_bytes += leaf.fileSize();
    } else if (!ticked && isThere) {
        m_ticked[place].reset();
        --m_count;
        m_bytes -= std::min(m_bytes, leaf.fileSize());
        if (m_ticked.size() > gapsWorthClosing + 2 * m_count) {
            m_ticked = allSelectNumArr();
            for (std::size_t i = 0; i < m_ticked.size(); ++i)
                leafOf(*m_ticked[i]).setSelectionPlace(i);
        }
    }
}

std::string DuplicateSelection::countOf(const TreeNode &group) {
    return countText(tickedIn(group), std::size_t(group.numberOfChildren()));
}

void DuplicateSelection::refreshGroup(TreeNode &group) {
    const std::size_t ticked = tickedIn(group);
    const auto all = std::size_t(group.numberOfChildren());
    SimpleNodeData &data = dataOf(group);
    data.setSelectNum(ticked == 0 ? 0 : ticked == all ? 1 : 2);
    data.setShowSelectNumStr(countText(ticked, all));
}

void DuplicateSelection::clickGroup(const TreeNode::Pointer &group, const IsShown &isShown) {
    const bool ticks = dataOf(*group).selectNum() == 0;
    const auto leaves = group->children();
    for (const auto &leaf : leaves)
        set(leaf, ticks && leaf != leaves.back() && (!isShown || isShown(*leaf)));
    refreshGroup(*group);
}

bool DuplicateSelection::tickLeaf(const TreeNode::Pointer &leaf) {
    TreeNode &group = *leaf->nodeParent();
    if (leafOf(*leaf).selectNum() == 1)
        return true;
    if (tickedIn(group) + 1 >= std::size_t(group.numberOfChildren()))
        return false;
    set(leaf, true);
    refreshGroup(group);
    return true;
}

void DuplicateSelection::tickLastLeaf(const TreeNode::Pointer &leaf) {
    set(leaf, true);
    refreshGroup(*leaf->nodeParent());
}

void DuplicateSelection::untickLeaf(const TreeNode::Pointer &leaf) {
    set(leaf, false);
    refreshGroup(*leaf->nodeParent());
}

void DuplicateSelection::setAllSelectOrNoSelect(const TreeNode &list, bool on,
                                                const IsShown &isShown) {
    beginBulk();
    const auto groups = list.children();
    for (const auto &group : groups) {
        if (!hasRow(*group, isShown))
            continue;
        const auto leaves = group->children();
        for (const auto &leaf : leaves) {
            m_before.push_back({leaf, leafOf(*leaf).selectNum() == 1});
            if (!on || leaf == leaves.back())
                set(leaf, false);
            else if (!isShown || isShown(*leaf))
                set(leaf, true);
        }
        refreshGroup(*group);
        // Without ticks the text counts groups, until the row is drawn and counts its own files.
        if (!on)
            dataOf(*group).setShowSelectNumStr(countText(0, groups.size()));
    }
}

void DuplicateSelection::setTicked(const TreeNode::List &nodes, bool ticks,
                                   const IsShown &isShown) {
    beginBulk();
    std::unordered_set<const TreeNode *> remembered;
    for (const auto &node : nodes) {
        const bool isGroup = dataOf(*node).isGroup();
        TreeNode *const group = isGroup ? node.get() : node->nodeParent();
        if (remembered.insert(group).second)
            remember(*group);
        if ((dataOf(*node).selectNum() != 0) == ticks)
            continue;
        if (isGroup)
            clickGroup(node, isShown);
        else if (ticks)
            tickLeaf(node);
        else
            untickLeaf(node);
    }
}

void DuplicateSelection::keepOnly(const TreeNode::Pointer &leaf, const IsShown &isShown) {
    beginBulk();
    tickByRule(leaf->nodeParent()->shared_from_this(), isShown,
               [&](const auto &each) { return each == leaf; });
}

// -- Ticks by rule

void DuplicateSelection::beginBulk() {
    m_before.clear();
}

void DuplicateSelection::remember(const TreeNode &group) {
    for (const auto &leaf : group.children())
        m_before.push_back({leaf, leafOf(*leaf).selectNum() == 1});
}

template <typename Stays>
void DuplicateSelection::tickByRule(const TreeNode::Pointer &group, const IsShown &isShown,
                                    Stays stays) {
    remember(*group);
    for (const auto &leaf : group->children()) {
        if (stays(leaf))
            set(leaf, false);
        else if (!isShown || isShown(*leaf))
            set(leaf, true);
    }
    refreshGroup(*group);
}

void DuplicateSelection::tickAllBut(const TreeNode::List &groups, KeepRule rule,
                                    const IsShown &isShown) {
    beginBulk();
    for (const auto &group : groups) {
        const auto kept = hasRow(*group, isShown) ? leafToKeep(*group, rule) : nullptr;
        if (kept)
            tickByRule(group, isShown, [&](const auto &leaf) { return leaf == kept; });
    }
}

void DuplicateSelection::tickAllOutside(const TreeNode::List &groups,
                                        const std::filesystem::path &folder,
                                        const IsShown &isShown) {
    beginBulk();
    const auto isInside = [&](const TreeNode::Pointer &leaf) {
        return paths::isSameOrBelow(leafOf(*leaf).name(), folder.native());
    };
    for (const auto &group : groups) {
        const auto leaves = group->children();
        // A link is no copy that could stay alone.
        const bool hasOneInside = std::any_of(leaves.begin(), leaves.end(), [&](const auto &leaf) {
            return isInside(leaf) && leafOf(*leaf).searched().kind != SearchedFile::Kind::Link;
        });
        if (hasOneInside && hasRow(*group, isShown))
            tickByRule(group, isShown, isInside);
    }
}

void DuplicateSelection::undo() {
    const auto before = std::exchange(m_before, {});
    TreeNode *group = nullptr;
    for (const Before &one : before) {
        // What has gone since has no group.
        if (!one.leaf->nodeParent())
            continue;
        set(one.leaf, one.ticked);
        if (group && group != one.leaf->nodeParent())
            refreshGroup(*group);
        group = one.leaf->nodeParent();
    }
    if (group)
        refreshGroup(*group);
}

void DuplicateSelection::forget(const TreeNode::Pointer &leaf) {
    set(leaf, false);
    // What was ticked before could now be all of a group.
    m_before.clear();
}

void DuplicateSelection::clear() {
    m_ticked.clear();
    m_before.clear();
    m_count = 0;
    m_bytes = 0;
}

} // namespace brightsweep
