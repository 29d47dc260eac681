#include "platform/linux/LinuxMemorySource.h"

#include "foundation/SmallFile.h"

#include <unistd.h>

#include <charconv>
#include <optional>

namespace brightsweep {

namespace {

constexpr std::uint64_t kibibyte = 1024;
constexpr std::string_view wiredNames[] = {"Unevictable", "SUnreclaim", "KernelStack",
                                           "PageTables"};

// The number of the line that starts with the whole name, which a colon or a blank ends.
std::optional<std::uint64_t> numberOf(std::string_view text, std::string_view name) {
    while (!text.empty()) {
        const auto end = text.find('\n');
        std::string_view line = text.substr(0, end);
        text.remove_prefix(end == text.npos ? text.size() : end + 1);
        if (!line.starts_with(name))
            continue;
        line.remove_prefix(name.size());
        const auto digit = line.find_first_not_of(": \t");
        if (digit == 0 || digit == line.npos)
            continue;
        std::uint64_t number = 0;
        if (std::from_chars(line.data() + digit, line.data() + line.size(), number).ec ==
            std::errc())
            return number;
    }
    return std::nullopt;
}

} // namespace

Result<MemoryCounts> LinuxMemorySource::parse(std::string_view meminfo, std::string_view vmstat,
                                              std::uint64_t pageSize) {
    const auto pages = [&](std::uint64_t kibibytes) { return kibibytes * kibibyte / pageSize; };
    const auto free = numberOf(meminfo, "MemFree");
    const auto active = numberOf(meminfo, "Active");
    const auto inactive = numberOf(meminfo, "Inactive");
    if (!free || !active || !inactive)
        return std::errc::invalid_argument;
    std::uint64_t wired = 0;
    for (const std::string_view name : wiredNames)
        wired += numberOf(meminfo, name).value_or(0);
    MemoryCounts counts;
    counts.free = pages(*free);
    counts.active = pages(*active);
    counts.inactive = pages(*inactive);
    counts.wired = pages(wired);
    counts.pageIn = pages(numberOf(vmstat, "pgpgin").value_or(0));
    counts.pageOut = pages(numberOf(vmstat, "pgpgout").value_or(0));
    counts.faults = numberOf(vmstat, "pgfault").value_or(0);
    return counts;
}

Result<std::uint64_t> LinuxMemorySource::parseAvailable(std::string_view meminfo) {
    const auto available = numberOf(meminfo, "MemAvailable");
    if (!available)
        return std::errc::invalid_argument;
    return *available * kibibyte;
}

Result<MemoryCounts> LinuxMemorySource::counts() {
    const auto meminfo = readSmallFile("/proc/meminfo");
    if (!meminfo)
        return meminfo.error();
    const auto vmstat = readSmallFile("/proc/vmstat");
    if (!vmstat)
        return vmstat.error();
    return parse(*meminfo, *vmstat, std::uint64_t(::sysconf(_SC_PAGESIZE)));
}

Result<std::uint64_t> LinuxMemorySource::availableBytes() {
    const auto meminfo = readSmallFile("/proc/meminfo");
    if (!meminfo)
        return meminfo.error();
    return parseAvailable(*meminfo);
}

} // namespace brightsweep
