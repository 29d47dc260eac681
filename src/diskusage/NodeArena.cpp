#include "diskusage/NodeArena.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace brightsweep {

namespace {

// A small tree takes little; a large one has few chunks.
constexpr std::size_t firstChunk = 16 * 1024;
constexpr std::size_t largestChunk = 1024 * 1024;
// What would waste more of a chunk than this gets one of its own.
constexpr std::size_t largePiece = firstChunk / 4;

} // namespace

void *NodeArena::allocate(std::size_t size) {
    return grab(size, alignof(std::uint64_t));
}

const char *NodeArena::copy(std::string_view text) {
    char *copied = grab(text.size() + 1, 1);
    std::memcpy(copied, text.data(), text.size());
    copied[text.size()] = '\0';
    return copied;
}

std::size_t NodeArena::bytesUsed() const {
    const std::lock_guard lock(m_mutex);
    return m_taken - m_left;
}

char *NodeArena::grab(std::size_t size, std::size_t alignment) {
    const std::lock_guard lock(m_mutex);
    const std::size_t padding = -reinterpret_cast<std::uintptr_t>(m_next) % alignment;
    if (padding + size <= m_left) {
        char *const piece = m_next + padding;
        m_next = piece + size;
        m_left -= padding + size;
        return piece;
    }
    const bool ownChunk = size >= largePiece;
    if (!ownChunk)
        m_chunkSize = std::min(std::max(2 * m_chunkSize, firstChunk), largestChunk);
    const std::size_t taken = ownChunk ? size : m_chunkSize;
    // new[] aligns for every fundamental type.
    char *const chunk = m_chunks.emplace_back(std::make_unique_for_overwrite<char[]>(taken)).get();
    m_taken += taken;
    if (!ownChunk) {
        m_next = chunk + size;
        m_left = taken - size;
    }
    return chunk;
}

} // namespace brightsweep
