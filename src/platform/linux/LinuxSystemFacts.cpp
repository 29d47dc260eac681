#include "platform/linux/LinuxSystemFacts.h"

#include "foundation/LastError.h"
#include "foundation/SmallFile.h"
#include "foundation/Trimmed.h"

#include <sys/utsname.h>
#include <unistd.h>

#include <charconv>
#include <optional>

namespace brightsweep {

namespace {

using Value = Result<std::string>;

std::string eightBytes(std::uint64_t number) {
    return {reinterpret_cast<const char *>(&number), sizeof number};
}

template <std::size_t N>
Value unameField(char (utsname::*field)[N]) {
    utsname names{};
    if (::uname(&names) != 0)
        return lastError();
    return std::string(names.*field);
}

// The value of the first line "name : value" of a file of such lines.
Value lineOf(const char *path, std::string_view name) {
    const auto text = readSmallFile(path);
    if (!text)
        return text.error();
    for (std::string_view rest = *text; !rest.empty();) {
        const auto end = rest.find('\n');
        const std::string_view line = rest.substr(0, end);
        rest.remove_prefix(end == rest.npos ? rest.size() : end + 1);
        const auto colon = line.find(':');
        if (colon != line.npos && trimmed(line.substr(0, colon)) == name)
            return std::string(trimmed(line.substr(colon + 1)));
    }
    return std::errc::no_such_file_or_directory;
}

Value productName() {
    const auto text = readSmallFile("/sys/class/dmi/id/product_name");
    if (!text)
        return text.error();
    return std::string(trimmed(*text));
}

Value memorySize() {
    const auto kibibytes = lineOf("/proc/meminfo", "MemTotal");
    if (!kibibytes)
        return kibibytes.error();
    std::uint64_t number = 0;
    const char *begin = kibibytes->data();
    if (std::from_chars(begin, begin + kibibytes->size(), number).ec != std::errc())
        return std::errc::invalid_argument;
    return eightBytes(number * 1024);
}

Value pageSize() {
    const long size = ::sysconf(_SC_PAGESIZE);
    return size < 0 ? Value(lastError()) : eightBytes(std::uint64_t(size));
}

Value physicalMemory() {
    const long pages = ::sysconf(_SC_PHYS_PAGES);
    const long size = ::sysconf(_SC_PAGESIZE);
    return pages < 0 || size < 0 ? Value(lastError())
                                 : eightBytes(std::uint64_t(pages) * std::uint64_t(size));
}

// Another one after every start of the system.
Value bootIdentifier() {
    const auto text = readSmallFile("/proc/sys/kernel/random/boot_id");
    if (!text)
        return text.error();
    return std::string(trimmed(*text));
}

constexpr struct {
    std::string_view name;
    Value (*read)();
} kernelNames[] = {
    {"hw.machine", [] { return unameField(&utsname::machine); }},
    {"hw.model", productName},
    {"hw.memsize", memorySize},
    {"hw.physmem", physicalMemory},
    {"hw.pagesize", pageSize},
    {"machdep.cpu.vendor", [] { return lineOf("/proc/cpuinfo", "vendor_id"); }},
    {"machdep.cpu.brand_string", [] { return lineOf("/proc/cpuinfo", "model name"); }},
    {"kern.ostype", [] { return unameField(&utsname::sysname); }},
    {"kern.osrelease", [] { return unameField(&utsname::release); }},
    {"kern.hostname", [] { return unameField(&utsname::nodename); }},
    {"kern.bootsessionuuid", bootIdentifier},
};

} // namespace

Result<SystemVersion> LinuxSystemFacts::version() {
    const auto release = unameField(&utsname::release);
    if (!release)
        return release.error();
    return versionOfRelease(*release);
}

Result<SystemVersion> LinuxSystemFacts::versionOfRelease(std::string_view release) {
    SystemVersion version{10, 0, 0};
    const char *const end = release.data() + release.size();
    const auto major = std::from_chars(release.data(), end, version.minor);
    if (major.ec != std::errc() || major.ptr == end || *major.ptr != '.' ||
        std::from_chars(major.ptr + 1, end, version.bugFix).ec != std::errc())
        return std::errc::invalid_argument;
    ++version.minor;
    return version;
}

Result<std::string> LinuxSystemFacts::kernelValue(std::string_view name) {
    for (const auto &known : kernelNames) {
        if (known.name == name)
            return known.read();
    }
    return std::errc::no_such_file_or_directory;
}

} // namespace brightsweep
