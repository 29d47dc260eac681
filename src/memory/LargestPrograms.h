#pragma once

#include "platform/MemorySource.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace brightsweep {

/// What the processes of one program hold together.
struct ProgramMemory {
    std::string application; ///< the identifier of its application, or empty
    std::string program;     ///< the name of the executable of its largest process, in bytes
    std::size_t processes = 0;
    std::uint64_t bytes = 0;
};

/// The programs that hold most, largest first. Processes of one application are one program, and so
/// are those of one executable outside of any. What they share is counted once for each program, by
/// the process that has most of it: the sums are estimates until the shares are exact.
std::vector<ProgramMemory> largestPrograms(const std::vector<ProcessMemory> &processes,
                                           std::size_t count);

} // namespace brightsweep
