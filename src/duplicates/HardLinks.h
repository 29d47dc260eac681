#pragma once

#include "results/TreeNode.h"

#include <cstdint>

namespace brightsweep {

/// Counts for each leaf of a group how many leaves are names of the same file: hard links, or a
/// link and what it leads to; see DuplicateLeaf::names(). Again whenever one has gone.
void countNames(const TreeNode &group);

} // namespace brightsweep
