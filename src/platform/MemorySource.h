#pragma once

#include "foundation/Result.h"

#include <atomic>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

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

/// What the counts leave open, in bytes.
struct MemoryDetails {
    std::uint64_t available = 0; ///< what programs can still get without swapping
    std::uint64_t fileCache = 0; ///< copies of files that the system can drop
    std::uint64_t swapUsed = 0;
    std::uint64_t swapTotal = 0;
    std::uint64_t compressed = 0; ///< memory that holds compressed pages (zram, zswap)
    /// Percent of the last ten seconds in which some program waited for memory (PSI); none where
    /// the kernel does not measure it.
    std::optional<double> pressure;
    bool operator==(const MemoryDetails &) const = default;
};

/// What one process holds, in bytes.
struct ProcessMemory {
    int process = 0;
    std::string program;      ///< the name of its executable, in bytes
    std::string application;  ///< the identifier of the application that it belongs to, or empty
    std::uint64_t own = 0;    ///< its alone
    std::uint64_t shared = 0; ///< held together with others, wholly counted for each of them
    bool isExact = false;     ///< `own` has its exact share of all, `shared` is 0
};

enum class ProcessReading {
    Quick, ///< about 20 microseconds a process
    Exact, ///< about 2 milliseconds a process; for a worker. Of other users' processes it is quick.
};

/// The machine's memory figures, read anew by each call. Any thread.
class MemorySource {
public:
    virtual ~MemorySource();
    virtual std::string unavailableReason() const { return {}; }

    virtual Result<MemoryCounts> counts() = 0;
    /// What programs can still get without swapping, in bytes.
    virtual Result<std::uint64_t> availableBytes() = 0;
    virtual Result<MemoryDetails> details() = 0;
    /// Every process that can be looked at; those that a raised `stop` leaves out are missing.
    virtual std::vector<ProcessMemory> processes(ProcessReading reading,
                                                 const std::atomic<bool> *stop) = 0;
};

} // namespace brightsweep
