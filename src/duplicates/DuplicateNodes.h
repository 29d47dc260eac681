#pragma once

#include "duplicates/SearchedFile.h"
#include "results/TreeNode.h"

namespace brightsweep {

/// What a node of the tree of duplicates holds, be it a group or a file.
inline SimpleNodeData &dataOf(const TreeNode &node) {
    return static_cast<SimpleNodeData &>(*node.nodeData());
}

/// What a file of a group holds.
inline DuplicateLeaf &leafOf(const TreeNode &file) {
    return static_cast<DuplicateLeaf &>(*file.nodeData());
}

} // namespace brightsweep
