#include "platform/linux/LinuxMemorySource.h"

#include "foundation/SmallFile.h"
#include "platform/linux/LinuxProcessMemory.h"

#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <optional>
#include <sstream>

namespace brightsweep {

namespace {

constexpr std::uint64_t kibibyte = 1024;
constexpr char meminfoFile[] = "proc/meminfo";
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

// "some avg10=0.00 avg60=…", see Documentation/accounting/psi.rst.
std::optional<double> someOfTenSeconds(std::string_view pressure) {
    constexpr std::string_view key = "some avg10=";
    const auto at = pressure.find(key);
    if (at == pressure.npos)
        return std::nullopt;
    double percent = 0;
    const char *const begin = pressure.data() + at + key.size();
    const char *const end = pressure.data() + pressure.size();
    if (std::from_chars(begin, end, percent).ec != std::errc())
        return std::nullopt;
    return percent;
}

// The third number of mm_stat: the memory that a compressed device takes, whatever it is used for.
std::uint64_t usedByZram(const std::filesystem::path &devices) {
    std::uint64_t sum = 0;
    std::error_code error;
    for (std::filesystem::directory_iterator device(devices, error), end; !error && device != end;
         device.increment(error)) {
        if (!device->path().filename().native().starts_with("zram"))
            continue;
        const auto text = readSmallFile(device->path() / "mm_stat");
        if (!text)
            continue;
        std::istringstream numbers(*text);
        std::uint64_t original = 0;
        std::uint64_t compressed = 0;
        std::uint64_t used = 0;
        // An unused device takes some as well.
        if (numbers >> original >> compressed >> used && original > 0)
            sum += used;
    }
    return sum;
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
    const auto meminfo = readSmallFile(m_root / meminfoFile);
    if (!meminfo)
        return meminfo.error();
    const auto vmstat = readSmallFile(m_root / "proc/vmstat");
    if (!vmstat)
        return vmstat.error();
    return parse(*meminfo, *vmstat, std::uint64_t(::sysconf(_SC_PAGESIZE)));
}

Result<std::uint64_t> LinuxMemorySource::availableBytes() {
    const auto meminfo = readSmallFile(m_root / meminfoFile);
    if (!meminfo)
        return meminfo.error();
    return parseAvailable(*meminfo);
}

Result<MemoryDetails> LinuxMemorySource::details() {
    const auto meminfo = readSmallFile(m_root / meminfoFile);
    if (!meminfo)
        return meminfo.error();
    const auto bytes = [&](std::string_view name) {
        return numberOf(*meminfo, name).value_or(0) * kibibyte;
    };
    const auto available = parseAvailable(*meminfo);
    if (!available)
        return available.error();
    MemoryDetails details;
    details.available = *available;
    // Shared memory counts as cached, and cannot be dropped.
    const std::uint64_t cached = bytes("Cached") + bytes("Buffers") + bytes("SReclaimable");
    details.fileCache = cached - std::min(cached, bytes("Shmem"));
    details.swapTotal = bytes("SwapTotal");
    details.swapUsed = details.swapTotal - std::min(details.swapTotal, bytes("SwapFree"));
    details.compressed = bytes("Zswap") + usedByZram(m_root / "sys/block");
    if (const auto pressure = readSmallFile(m_root / "proc/pressure/memory"))
        details.pressure = someOfTenSeconds(*pressure);
    return details;
}

std::vector<ProcessMemory> LinuxMemorySource::processes(ProcessReading reading,
                                                        const std::atomic<bool> *stop) {
    return readProcessMemory(m_root / "proc", reading, stop);
}

} // namespace brightsweep
