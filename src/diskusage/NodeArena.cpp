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
    return m_given;
}

char *NodeArena::grab(std::size_t size, std::size_t alignment) {
    const std::lock_guard lock(m_mutex);
    m_given += size;
    return static_cast<char *>(m_chunks.allocate(size, alignment));
}

} // namespace brightsweep
