#pragma once

#include "platform/MemorySource.h"

#include <filesystem>
#include <string_view>

namespace brightsweep {

/// Figures of /proc and /sys, which a test may keep below another root.
class LinuxMemorySource final : public MemorySource {
public:
    explicit LinuxMemorySource(std::filesystem::path root = "/") : m_root(std::move(root)) {}

    Result<MemoryCounts> counts() override;
    Result<std::uint64_t> availableBytes() override;
    Result<MemoryDetails> details() override;
    std::vector<ProcessMemory> processes(ProcessReading reading,
                                         const std::atomic<bool> *stop) override;

    /// The counts that the two files' texts give; the page size is in bytes. A text without the
    /// free, active and inactive figures is an error, any other missing figure counts as 0.
    static Result<MemoryCounts> parse(std::string_view meminfo, std::string_view vmstat,
                                      std::uint64_t pageSize);
    /// The available bytes; an error where the text does not tell them.
    static Result<std::uint64_t> parseAvailable(std::string_view meminfo);

private:
    const std::filesystem::path m_root;
};

} // namespace brightsweep
