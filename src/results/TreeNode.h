#pragma once

#include "results/TreeNodeData.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace brightsweep {

/// The structure of a result tree. A parent owns its children; a node knows its parent without
/// owning it. One node may stand in the lists of several parents and then knows the one that took
/// it in last. Trees are made and changed on one thread at a time.
class TreeNode : public std::enable_shared_from_this<TreeNode> {
public:
    using Pointer = std::shared_ptr<TreeNode>;
    using List = std::vector<Pointer>;

    static Pointer treeNodeWithData(std::shared_ptr<TreeNodeData> data);

    TreeNode() = default;
    /// The children's own parent is not set by this.
    TreeNode(std::shared_ptr<TreeNodeData> data, TreeNode *parent, List children);
    virtual ~TreeNode();
    TreeNode(const TreeNode &) = delete;
    TreeNode &operator=(const TreeNode &) = delete;

    void setNodeData(std::shared_ptr<TreeNodeData> data) { m_nodeData = std::move(data); }
    const std::shared_ptr<TreeNodeData> &nodeData() const { return m_nodeData; }
    void setNodeParent(TreeNode *parent) { m_nodeParent = parent; }
    TreeNode *nodeParent() const { return m_nodeParent; }

    /// An index outside the list is refused and logged.
    void insertChild(const Pointer &child, std::int32_t atIndex);
    void _removeChildrenIdenticalTo(const List &children);
    /// Refused and logged where the node is no child.
    void removeChild(const TreeNode *child);
    /// May end the node's life.
    void removeFromParent();
    /// -1 where it is no child.
    std::int32_t indexOfChild(const TreeNode *child) const;
    std::int32_t indexOfChildIdenticalTo(const TreeNode *child) const;
    std::int32_t numberOfChildren() const { return std::int32_t(m_nodeChildren.size()); }
    /// None without children.
    Pointer firstChild() const;
    Pointer lastChild() const;
    /// None, and a line in the log, for an index outside the list.
    Pointer childAtIndex(std::int32_t index) const;
    /// A copy, so that the tree can be changed while it is walked.
    List children() const { return m_nodeChildren; }

    /// True for the node itself too.
    bool isDescendantOfNode(const TreeNode *node) const;
    bool isDescendantOfNodeInArray(const List &nodes) const;

    /// Each sorts the children and every level below.
    void acendingSortName();
    void acendingSortSize();
    void acendingSortDate();
    void decendingSortName();
    void decendingSortSize();
    void decendingSortDate();

    int compareName(const TreeNode &other) const;
    int compareSize(const TreeNode &other) const;
    int compareDate(const TreeNode &other) const;
    int compareNameR(const TreeNode &other) const { return other.compareName(*this); }
    int compareSizeR(const TreeNode &other) const { return other.compareSize(*this); }
    int compareDateR(const TreeNode &other) const { return other.compareDate(*this); }

    std::string description() const;

    /// The nodes that cover all of the list: the climb from each goes to the top, so these are the
    /// roots of the trees concerned.
    static List minimumNodeCoverFromNodesInArray(const List &nodes);

private:
    using Compare = int (TreeNode::*)(const TreeNode &) const;
    void sort(Compare compare);

    TreeNode *m_nodeParent = nullptr;
    std::shared_ptr<TreeNodeData> m_nodeData;
    List m_nodeChildren;
};

} // namespace brightsweep
