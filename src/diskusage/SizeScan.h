#pragma once

#include "diskusage/AllDir.h"
#include "platform/DirectoryWalk.h"

namespace brightsweep {

/// Fills one node of a size tree with what lies below a directory: one pass over each directory,
/// several directories at once, on the calling thread and helpers that live for the call only.
class SizeScan final : public DirectoryWalk::Visitor {
public:
    /// `isTop` as for AllDir::ListAllDir().
    SizeScan(AllDir &root, bool isTop);

    /// Returns when the tree is complete, or AllDir::bStopScan or that the tree is abandoned has
    /// been seen.
    void run(std::string_view path);

    void entries(DirectoryWalk::Directory &directory, const DirectoryBlock &block) override;
    void read(DirectoryWalk::Directory &directory, std::error_code error) override;
    void left(DirectoryWalk::Directory &directory) override;
    void between() override;

private:
    void add(AllDir &node, std::uint64_t bytes);
    void sort(AllDir &node);

    AllDir &m_root;
    const bool m_isTop;
    NodeArena &m_arena;
    DirectoryWalk m_walk;
    std::atomic<bool> m_rootRead{false};
    std::atomic<std::int64_t> m_topFinished{0};
    bool m_levelsPosted = false;
    std::int64_t m_progressPosted = 0;
};

} // namespace brightsweep
