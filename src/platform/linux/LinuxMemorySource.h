#pragma once

#include "platform/MemorySource.h"

#include <string_view>

namespace brightsweep {

/// Figures of /proc/meminfo and /proc/vmstat.
class LinuxMemorySource final : public MemorySource {
public:
    Result<MemoryCounts> counts() override;
    Result<std::uint64_t> availableBytes() override;

    /// The counts that the two files' texts give; the page size is in bytes. A text without the
    /// free, active and inactive figures is an error, any other missing figure counts as 0.
    static Result<MemoryCounts> parse(std::string_view meminfo, std::string_view vmstat,
                                      std::uint64_t pageSize);
    /// The available bytes; an error where the text does not tell them.
    static Result<std::uint64_t> parseAvailable(std::string_view meminfo);
};

} // namespace brightsweep
