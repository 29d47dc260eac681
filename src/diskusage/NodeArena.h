#pragma once

#include <cstddef>
#include <memory>
#include <mutex>
#include <string_view>
#include <vector>

namespace brightsweep {

/// The storage of one size tree: nodes, names and child arrays, given out in pieces of large
/// chunks.
///
/// Nothing is given back singly. The whole goes at once, in time that depends on the number of
/// chunks and not of nodes, and without a destructor being called. allocate() is safe from every
/// thread; it throws std::bad_alloc like any allocation.
class NodeArena {
public:
    NodeArena() = default;
    NodeArena(const NodeArena &) = delete;
    NodeArena &operator=(const NodeArena &) = delete;

    /// Storage aligned for pointers and 64-bit numbers.
    void *allocate(std::size_t size);
    /// A copy of the text with a NUL behind it.
    const char *copy(std::string_view text);

    /// Bytes given out so far, with what was lost between and behind them.
    std::size_t bytesUsed() const;

private:
    char *grab(std::size_t size, std::size_t alignment);

    mutable std::mutex m_mutex;
    std::vector<std::unique_ptr<char[]>> m_chunks;
    char *m_next = nullptr;
    std::size_t m_left = 0;
    std::size_t m_chunkSize = 0;
    std::size_t m_taken = 0;
};

} // namespace brightsweep
