#pragma once

#include "results/TreeNode.h"

#include <cstdint>

namespace brightsweep {

/// Counts for each leaf of a group how many leaves are names of the same file: hard links, or a
/// link and what it leads to; see DuplicateLeaf::names(). Again whenever one has gone.
void countNames(const TreeNode &group);

/// What would come back if one file of the group stayed. Names of one file count once.
std::uint64_t wastedBy(const TreeNode &group);

/// What would come back at most if these leaves went: a file of which another name stays in its
/// group keeps its blocks. Names outside the groups, shared blocks and snapshots are not known
/// here.
std::uint64_t freedWithout(const TreeNode::List &leaves);

} // namespace brightsweep
