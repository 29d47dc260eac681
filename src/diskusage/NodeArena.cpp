#include "diskusage/NodeArena.h"

#include <cstdint>
#include <cstring>

namespace brightsweep {

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
    std::size_t bytes = m_given;
    for (const auto &other : m_adopted)
        bytes += other->bytesUsed();
    return bytes;
}

void NodeArena::adopt(NodeArena *other) {
    const std::lock_guard lock(m_mutex);
    m_adopted.emplace_back(other);
}

char *NodeArena::grab(std::size_t size, std::size_t alignment) {
    const std::lock_guard lock(m_mutex);
    m_given += size;
    return static_cast<char *>(m_chunks.allocate(size, alignment));
}

} // namespace brightsweep
