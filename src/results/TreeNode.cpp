#include "results/TreeNode.h"

#include "foundation/Log.h"

#include <algorithm>
#include <unordered_set>

namespace brightsweep {

TreeNode::Pointer TreeNode::treeNodeWithData(std::shared_ptr<TreeNodeData> data) {
    return std::make_shared<TreeNode>(std::move(data), nullptr, List());
}

TreeNode::TreeNode(std::shared_ptr<TreeNodeData> data, TreeNode *parent, List children)
    : m_nodeParent(parent), m_nodeData(std::move(data)), m_nodeChildren(std::move(children)) {}

TreeNode::~TreeNode() {
    for (const Pointer &child : m_nodeChildren) {
        if (child->m_nodeParent == this)
            child->m_nodeParent = nullptr;
    }
}

void TreeNode::insertChild(const Pointer &child, std::int32_t atIndex) {
    if (!child || atIndex < 0 || atIndex > numberOfChildren()) {
        NSLog("insertChild: no place %d among %d children", atIndex, numberOfChildren());
        return;
    }
    m_nodeChildren.insert(m_nodeChildren.begin() + atIndex, child);
    child->m_nodeParent = this;
}

void TreeNode::_removeChildrenIdenticalTo(const List &children) {
    std::unordered_set<const TreeNode *> removed;
    for (const Pointer &child : children) {
        child->m_nodeParent = nullptr;
        removed.insert(child.get());
    }
    std::erase_if(m_nodeChildren,
                  [&](const Pointer &child) { return removed.contains(child.get()); });
}

void TreeNode::removeChild(const TreeNode *child) {
    const std::int32_t index = indexOfChild(child);
    if (index < 0) {
        NSLog("removeChild: the node is no child");
        return;
    }
    m_nodeChildren[std::size_t(index)]->m_nodeParent = nullptr;
    m_nodeChildren.erase(m_nodeChildren.begin() + index);
}

void TreeNode::removeFromParent() {
    if (m_nodeParent)
        m_nodeParent->removeChild(this);
}

std::int32_t TreeNode::indexOfChild(const TreeNode *child) const {
    return indexOfChildIdenticalTo(child);
}

std::int32_t TreeNode::indexOfChildIdenticalTo(const TreeNode *child) const {
    const auto found = std::find_if(m_nodeChildren.begin(), m_nodeChildren.end(),
                                    [&](const Pointer &each) { return each.get() == child; });
    return found == m_nodeChildren.end() ? -1 : std::int32_t(found - m_nodeChildren.begin());
}

TreeNode::Pointer TreeNode::firstChild() const {
    return m_nodeChildren.empty() ? nullptr : m_nodeChildren.front();
}

TreeNode::Pointer TreeNode::lastChild() const {
    return m_nodeChildren.empty() ? nullptr : m_nodeChildren.back();
}

TreeNode::Pointer TreeNode::childAtIndex(std::int32_t index) const {
    if (index < 0 || index >= numberOfChildren()) {
        NSLog("childAtIndex: no index %d among %d children", index, numberOfChildren());
        return nullptr;
    }
    return m_nodeChildren[std::size_t(index)];
}

bool TreeNode::isDescendantOfNode(const TreeNode *node) const {
    for (const TreeNode *each = this; each; each = each->m_nodeParent) {
        if (each == node)
            return true;
    }
    return false;
}

bool TreeNode::isDescendantOfNodeInArray(const List &nodes) const {
    return std::any_of(nodes.begin(), nodes.end(),
                       [&](const Pointer &node) { return isDescendantOfNode(node.get()); });
}

void TreeNode::acendingSortName() {
    sort(&TreeNode::compareName);
}
void TreeNode::acendingSortSize() {
    sort(&TreeNode::compareSize);
}
void TreeNode::acendingSortDate() {
    sort(&TreeNode::compareDate);
}
void TreeNode::decendingSortName() {
    sort(&TreeNode::compareNameR);
}
void TreeNode::decendingSortSize() {
    sort(&TreeNode::compareSizeR);
}
void TreeNode::decendingSortDate() {
    sort(&TreeNode::compareDateR);
}

// Equal children keep their order, so that a list does not jump about.
void TreeNode::sort(Compare compare) {
    std::stable_sort(m_nodeChildren.begin(), m_nodeChildren.end(),
                     [&](const Pointer &a, const Pointer &b) { return ((*a).*compare)(*b) < 0; });
    for (const Pointer &child : m_nodeChildren)
        child->sort(compare);
}

int TreeNode::compareName(const TreeNode &other) const {
    return m_nodeData && other.m_nodeData ? m_nodeData->compareName(*other.m_nodeData) : 0;
}

int TreeNode::compareSize(const TreeNode &other) const {
    return m_nodeData && other.m_nodeData ? m_nodeData->compareSize(*other.m_nodeData) : 0;
}

int TreeNode::compareDate(const TreeNode &other) const {
    return m_nodeData && other.m_nodeData ? m_nodeData->compareDate(*other.m_nodeData) : 0;
}

std::string TreeNode::description() const {
    return "{" + (m_nodeData ? m_nodeData->description() : std::string()) + "}";
}

TreeNode::List TreeNode::minimumNodeCoverFromNodesInArray(const List &nodes) {
    List cover;
    std::unordered_set<const TreeNode *> done;
    for (const Pointer &node : nodes) {
        if (!node || done.contains(node.get()))
            continue;
        TreeNode *top = node.get();
        for (; top->m_nodeParent; top = top->m_nodeParent)
            done.insert(top);
        done.insert(top);
        if (!top->isDescendantOfNodeInArray(cover))
            cover.push_back(top->shared_from_this());
    }
    return cover;
}

} // namespace brightsweep
