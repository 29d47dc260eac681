#pragma once

#include <atomic>
#include <cstddef>
#include <memory>
#include <memory_resource>
#include <mutex>
#include <string_view>
#include <vector>

namespace brightsweep {

/// The storage of one size tree: nodes, names and child arrays.
///
/// Nothing is given back singly. The whole goes at once, in time that depends on the number of
/// chunks and not of nodes, and without a destructor being called. allocate() is safe from every
/// thread; it throws std::bad_alloc like any allocation.
class NodeArena {
public:
    /// Storage aligned for pointers and 64-bit numbers.
    void *allocate(std::size_t size);
    /// A copy of the text with a NUL behind it.
    const char *copy(std::string_view text);

    /// Takes the storage of another tree over, which then lives as long as this one.
    void adopt(NodeArena *other);

    /// The scan that fills the tree is to end.
    std::atomic<bool> isAbandoned{false};

    /// Bytes given out so far.
    std::size_t bytesUsed() const;

private:
    char *grab(std::size_t size, std::size_t alignment);

    mutable std::mutex m_mutex;
    // A small tree takes little; each further chunk is larger than the one before.
    std::pmr::monotonic_buffer_resource m_chunks{16 * 1024};
    std::size_t m_given = 0;
    std::vector<std::unique_ptr<NodeArena>> m_adopted;
};

} // namespace brightsweep
