#pragma once

#include "results/SimpleNodeData.h"
#include "results/TreeNode.h"

#include <QVariantMap>

namespace brightsweep {

/// The node in use: a TreeNode whose payload is a SimpleNodeData.
class SimpleTreeNode : public TreeNode {
public:
    explicit SimpleTreeNode(std::shared_ptr<SimpleNodeData> data)
        : TreeNode(std::move(data), nullptr, {}) {}
    /// From the keys "Group", the group's name, and "Entries", a list in which a map becomes a
    /// subtree and any other value a leaf of that name.
    static std::shared_ptr<SimpleTreeNode> treeFromDictionary(const QVariantMap &dictionary);

    static std::shared_ptr<SimpleTreeNode> nodeWithData(std::shared_ptr<SimpleNodeData> data) {
        return std::make_shared<SimpleTreeNode>(std::move(data));
    }
    SimpleNodeData &data() const { return static_cast<SimpleNodeData &>(*nodeData()); }
};

} // namespace brightsweep
