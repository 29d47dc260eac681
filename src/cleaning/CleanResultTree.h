#pragma once

#include "cleaning/CleanNodeData.h"
#include "results/SimpleTreeNode.h"

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace brightsweep {

class ScanViewController;

/// Of a tree: nothing ticked, everything, or a part.
enum class TickState { None = 0, All = 1, Part = 2 };

/// The results of the clean page as a tree: a group for each category that has rows, a leaf for
/// each row, named by its full path. Kept on the main thread.
///
/// A construction takes over what the controllers hold. Nodes of rows that are still there stay the
/// same objects, and a category whose rows have not changed costs no more than a look at its ticks.
class CleanResultTree {
public:
    using Node = std::shared_ptr<SimpleTreeNode>;

    struct Group {
        unsigned category = 0;
        Node node;
        std::vector<Node> leaves; ///< in the order of the controller's rows
    };

    /// From the controllers in index order.
    void constructTree(const std::vector<ScanViewController *> &tableControllers);

    /// True when a construction would change more than ticks and figures.
    bool isStale(const std::vector<ScanViewController *> &tableControllers) const;

    const Node &treeData() const { return m_treeData; }
    const std::vector<Group> &groups() const { return m_groups; }
    /// The group of a group node or of a leaf; null for a node that is not of this tree.
    const Group *groupOf(const SimpleTreeNode *node) const;

    /// Sets a leaf's tick; refreshGroup() follows. False where it was so already.
    bool setSelectState(SimpleTreeNode *leaf, bool ticked);
    /// Counts a group's ticks again, for its state and its "selected/total".
    void refreshGroup(const Group &group);

    /// The ticked leaves of the outline.
    std::size_t selectedCount() const { return m_selected; }
    /// The state of the header's check box.
    TickState changeAllSelectCheckBoxState() const;

    /// Marks the leaves whose paths are given with the program that holds them, all others not.
    void setHolders(const std::unordered_map<std::string, std::string> &programOfPath);

private:
    struct Built {
        std::uint64_t generation = 0;
        std::vector<Node> leaves;
    };

    bool refreshLeaves(unsigned category, ScanViewController &controller);
    void rebuildLeaves(unsigned category, ScanViewController &controller);

    Node m_treeData = SimpleTreeNode::nodeWithData(SimpleNodeData::groupDataWithName("Root"));
    std::vector<Group> m_groups;
    std::array<Built, 6> m_built;
    std::size_t m_selected = 0;
};

} // namespace brightsweep
