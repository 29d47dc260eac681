#include "cleaning/CleanResultTree.h"

#include "cleaning/CleanCategories.h"
#include "cleaning/ItemSizes.h"
#include "cleaning/ScanViewController.h"
#include "foundation/SaturatingSum.h"

#include <algorithm>
#include <string_view>

namespace brightsweep {

namespace {

void fillLeaf(CleanNodeData &data, const CleanFileInfo &row) {
    data.setFileSize(row.shownSize);
    data.setSelectNum(row.bIsSelected != 0 ? 1 : 0);
    if (row.modified)
        data.setModificationDate(FileTime(std::chrono::nanoseconds(*row.modified)));
    data.failure = row.failure;
    data.reasonKey = row.reasonKey;
    data.isDirectory = row.isDirectory;
}

CleanNodeData &dataOf(const SimpleTreeNode &leaf) {
    return static_cast<CleanNodeData &>(leaf.data());
}

} // namespace

void CleanResultTree::constructTree(const std::vector<ScanViewController *> &tableControllers) {
    bool changed = false;
    for (unsigned category = 0; category < tableControllers.size(); ++category)
        changed |= refreshLeaves(category, *tableControllers[category]);
    if (changed) {
        m_treeData = SimpleTreeNode::nodeWithData(SimpleNodeData::groupDataWithName("Root"));
        m_groups.clear();
        for (unsigned category = 0; category < tableControllers.size(); ++category) {
            const std::vector<Node> &leaves = m_built[category].leaves;
            if (leaves.empty())
                continue;
            const Node group = SimpleTreeNode::nodeWithData(
                SimpleNodeData::groupDataWithName(cleanCategories[category].name));
            group->data().setIconRep(cleanCategories[category].groupIcon);
            for (const Node &leaf : leaves)
                group->insertChild(leaf, group->numberOfChildren());
            m_treeData->insertChild(group, m_treeData->numberOfChildren());
            m_groups.push_back({category, group, leaves});
        }
    }
    m_selected = 0;
    for (const Group &group : m_groups) {
        std::uint64_t bytes = 0;
        for (const Node &leaf : group.leaves) {
            bytes = addSaturating(bytes, leaf->data().fileSize());
            m_selected += leaf->data().selectNum() == 1 ? 1 : 0;
        }
        group.node->data().setFileSize(bytes);
        refreshGroup(group);
    }
}

bool CleanResultTree::isStale(const std::vector<ScanViewController *> &tableControllers) const {
    for (unsigned category = 0; category < tableControllers.size(); ++category) {
        if (m_built[category].generation != tableControllers[category]->generation())
            return true;
    }
    return false;
}

// True when the category's leaves had to be made anew; else only what the rows say is taken over.
bool CleanResultTree::refreshLeaves(unsigned category, ScanViewController &controller) {
    Built &built = m_built[category];
    if (built.generation != controller.generation()) {
        const bool hadLeaves = !built.leaves.empty();
        rebuildLeaves(category, controller);
        return hadLeaves || !built.leaves.empty();
    }
    std::size_t index = 0;
    controller.visitRows([&](const CleanFileInfo &row) {
        if (index < built.leaves.size())
            fillLeaf(dataOf(*built.leaves[index]), row);
        ++index;
    });
    return false;
}

void CleanResultTree::rebuildLeaves(unsigned category, ScanViewController &controller) {
    Built &built = m_built[category];
    std::unordered_map<std::string_view, Node> known;
    known.reserve(built.leaves.size());
    for (const Node &leaf : built.leaves)
        known.emplace(leaf->data().name(), leaf);
    // Taken before the rows: should they change meanwhile, the next construction looks again.
    built.generation = controller.generation();
    std::vector<Node> leaves;
    leaves.reserve(controller.rowCount());
    controller.visitRows([&](const CleanFileInfo &row) {
        const auto found = known.find(row.path.native());
        Node leaf;
        if (found != known.end()) {
            leaf = std::move(found->second);
            known.erase(found);
        } else {
            leaf = SimpleTreeNode::nodeWithData(std::make_shared<CleanNodeData>(row.path.native()));
        }
        fillLeaf(dataOf(*leaf), row);
        leaves.push_back(std::move(leaf));
    });
    known.clear();
    built.leaves = std::move(leaves);
}

const CleanResultTree::Group *CleanResultTree::groupOf(const SimpleTreeNode *node) const {
    const auto found = std::find_if(m_groups.begin(), m_groups.end(), [&](const Group &group) {
        return group.node.get() == node || (node && group.node.get() == node->nodeParent());
    });
    return found == m_groups.end() ? nullptr : &*found;
}

bool CleanResultTree::setSelectState(SimpleTreeNode *leaf, bool ticked) {
    const std::int32_t state = ticked ? 1 : 0;
    if (leaf->data().selectNum() == state)
        return false;
    leaf->data().setSelectNum(state);
    m_selected += ticked ? 1 : std::size_t(-1);
    return true;
}

void CleanResultTree::refreshGroup(const Group &group) {
    const auto ticked =
        std::count_if(group.leaves.begin(), group.leaves.end(),
                      [](const Node &leaf) { return leaf->data().selectNum() == 1; });
    const auto all = std::ptrdiff_t(group.leaves.size());
    SimpleNodeData &data = group.node->data();
    data.setSelectNum(ticked == 0 ? 0 : ticked == all ? 1 : 2);
    data.setShowSelectNumStr(std::to_string(ticked) + "/" + std::to_string(all));
}

TickState CleanResultTree::changeAllSelectCheckBoxState() const {
    const auto allAre = [this](std::int32_t state) {
        return std::all_of(m_groups.begin(), m_groups.end(), [&](const Group &group) {
            return group.node->data().selectNum() == state;
        });
    };
    // An empty tree has nothing ticked.
    return allAre(0) ? TickState::None : allAre(1) ? TickState::All : TickState::Part;
}

void CleanResultTree::setHolders(
    const std::unordered_map<std::string, std::string> &programOfPath) {
    for (const Group &group : m_groups) {
        for (const Node &leaf : group.leaves) {
            const auto found = programOfPath.find(leaf->data().name());
            dataOf(*leaf).holder =
                found == programOfPath.end() ? QString() : QString::fromUtf8(found->second.c_str());
        }
    }
}

} // namespace brightsweep
