#pragma once

#include "core/TaskStopper.h"
#include "diskusage/FSNode.h"
#include "diskusage/UnreadFolders.h"

#include <cstdint>
#include <filesystem>
#include <shared_mutex>

namespace brightsweep {

/// Builds the list mode's trees. A walk runs on the calling thread, with helpers that live for the
/// call only, and ends early when the flag of its TaskStopper is set, which outlives it; what was
/// found so far stays.
class NodeTreeOperator {
public:
    explicit NodeTreeOperator(TaskStopper &stopper = TaskStopper::sharedTaskStopper())
        : m_stopper(stopper) {}

    /// Adds to `root` what lies below the path and is at least `limit` bytes large, folders with
    /// all below them, in system order. Returns the bytes of everything there, kept or not. A path
    /// that is no folder becomes itself a child of `root`, unless it is smaller than the limit,
    /// which gives 0. Links are never followed; what cannot be read counts 0.
    std::uint64_t getFistListTree(const std::filesystem::path &path, FSNode &root,
                                  std::uint64_t limit);

    /// For an owner who cannot wait for a walk on another thread, which was stopped and hangs: adds
    /// up what it has found, returns the bytes of that, and keeps it from touching the tree again.
    /// It hangs for good then, and this object and the tree must stay.
    std::uint64_t giveUp(FSNode &root, std::uint64_t limit);

    void noteUnread(const std::filesystem::path &folder);
    /// Of all walks that have ended, and what was noted.
    const UnreadFolders &unread() const { return m_unread; }

private:
    TaskStopper &m_stopper;
    std::shared_mutex m_tree; // held by whoever writes a node
    UnreadFolders m_unread;
};

/// The size in bytes below which the list leaves items out, from the settings. It wraps: a limit in
/// the largest unit is larger than any file.
std::uint64_t getLimitSize();

} // namespace brightsweep
