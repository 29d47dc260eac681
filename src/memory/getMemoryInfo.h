#pragma once

#include <cstdint>

namespace brightsweep {

/// The machine's memory, in bytes.
struct MemoryInfo {
    std::uint64_t freeMem = 0;
    std::uint64_t inactiveMem = 0;
    std::uint64_t activeMem = 0;
    std::uint64_t wiredMem = 0;
    std::uint64_t usedMem = 0; ///< all that is not free: inactive memory counts as used
    std::uint64_t totalMem = 0;
    std::uint64_t pageIn = 0; ///< this and the next two since the system's start
    std::uint64_t pageOut = 0;
    std::uint64_t vMem = 0; ///< the page faults, scaled as bytes, in spite of the name
    std::uint64_t swap = 0; ///< never set
};

/// Reads the figures. 0, -1 for a null pointer, or the errno of the last kernel name that could not
/// be read. What cannot be read keeps its value; `usedMem` is computed in any case. Any thread.
int getMemoryInfo(MemoryInfo *info);

} // namespace brightsweep
