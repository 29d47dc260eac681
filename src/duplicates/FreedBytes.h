#pragma once

#include "results/TreeNode.h"

#include <atomic>
#include <cstdint>
#include <vector>

namespace brightsweep {

/// What the file system gives back, in stored bytes: names of a file, its holes and the blocks that
/// it shares with others count as they do there, as far as they are known. Snapshots are not.

/// What comes back if one file of the group stays.
std::uint64_t wastedBy(const TreeNode &group);

/// What comes back if these leaves go.
std::uint64_t freedBy(const TreeNode::List &leaves);

/// What each of these leaves frees, after a look at which blocks its file shares. Nothing where
/// their file system cannot share any, and where the look was stopped. What cannot be looked at
/// shares none. It may block for as long as the file system does: for workers; of the leaves it
/// reads only what never changes.
std::vector<std::uint64_t> lookForSharedBlocks(const TreeNode::List &leaves,
                                               const std::atomic<bool> &stop);

} // namespace brightsweep
