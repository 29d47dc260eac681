#pragma once

#include "foundation/Result.h"

#include <cstdint>
#include <string>

namespace brightsweep {

/// What the kernel counts, in pages of "hw.pagesize"; the last three since the system's start.
struct MemoryCounts {
    std::uint64_t free = 0;
    std::uint64_t inactive = 0;
    std::uint64_t active = 0;
    std::uint64_t wired = 0;
    std::uint64_t pageIn = 0;
    std::uint64_t pageOut = 0;
    std::uint64_t faults = 0;
    bool operator==(const MemoryCounts &) const = default;
};

/// The machine's memory figures, read anew by each call. Any thread.
class MemorySource {
public:
    virtual ~MemorySource();
    virtual std::string unavailableReason() const { return {}; }

    virtual Result<MemoryCounts> counts() = 0;
    /// What programs can still get without swapping, in bytes.
    virtual Result<std::uint64_t> availableBytes() = 0;
};

} // namespace brightsweep
