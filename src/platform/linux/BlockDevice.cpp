#include "platform/linux/BlockDevice.h"

#include "foundation/Paths.h"
#include "foundation/SmallFile.h"

#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <charconv>
#include <filesystem>
#include <set>
#include <system_error>

namespace brightsweep {

namespace {

namespace fs = std::filesystem;

constexpr int deepestStack = 16;         // devices upon devices
constexpr const char diskOfScsi[] = "5"; // the type of a drive for compact discs and the like

std::string firstLine(const fs::path &file) {
    const auto text = readSmallFile(file, 4096);
    return text ? (*text).substr(0, (*text).find('\n')) : std::string();
}

fs::path deviceFolder(DeviceNumber number) {
    std::error_code error;
    return fs::canonical("/sys/dev/block/" + std::to_string(number.majorNumber) + ":" +
                             std::to_string(number.minorNumber),
                         error);
}

std::optional<DeviceNumber> numberOf(const fs::path &folder) {
    const std::string text = firstLine(folder / "dev");
    const char *const end = text.data() + text.size();
    DeviceNumber number;
    const auto first = std::from_chars(text.data(), end, number.majorNumber);
    if (first.ec != std::errc() || first.ptr == end || *first.ptr != ':' ||
        std::from_chars(first.ptr + 1, end, number.minorNumber).ec != std::errc())
        return std::nullopt;
    return number;
}

// Partitions lie in their disk's folder; mapped devices name what they stand on.
void collectDisks(const fs::path &folder, int depth, std::set<fs::path> &disks) {
    std::error_code error;
    if (depth > deepestStack)
        return;
    if (fs::exists(folder / "partition", error))
        return collectDisks(folder.parent_path(), depth + 1, disks);
    bool stands = false;
    for (fs::directory_iterator i(folder / "slaves", error), end; !error && i != end;
         i.increment(error)) {
        std::error_code vanished;
        const fs::path below = fs::canonical(i->path(), vanished);
        if (vanished)
            continue;
        stands = true;
        collectDisks(below, depth + 1, disks);
    }
    if (!stands)
        disks.insert(folder);
}

bool isExternal(const fs::path &disk) {
    const std::string &path = disk.native();
    return path.find("/usb") != std::string::npos || path.find("/fw") != std::string::npos ||
           (path.find("/mmc_host/") != std::string::npos &&
            firstLine(disk / "device/type") == "SD");
}

} // namespace

std::optional<BlockDevice> readBlockDevice(DeviceNumber number) {
    const fs::path folder = deviceFolder(number);
    if (folder.empty())
        return std::nullopt;
    BlockDevice device;
    device.number = number;
    device.name = folder.filename();
    std::set<fs::path> disks;
    collectDisks(folder, 0, disks);
    if (disks.size() != 1)
        return device;
    const fs::path &disk = *disks.begin();
    std::error_code error;
    device.disk = disk.filename();
    device.diskNumber = numberOf(disk).value_or(number);
    device.removable = firstLine(disk / "removable") == "1";
    device.external = isExternal(disk);
    device.optical = device.disk.starts_with("sr") && firstLine(disk / "device/type") == diskOfScsi;
    device.image = fs::exists(disk / "loop/backing_file", error);
    return device;
}

std::optional<BlockDevice> deviceOfMount(const Mount &mount) {
    if (mount.deviceMajor != 0)
        return readBlockDevice({mount.deviceMajor, mount.deviceMinor});
    struct stat status;
    if (!mount.source.starts_with("/dev/") || ::stat(mount.source.c_str(), &status) != 0 ||
        !S_ISBLK(status.st_mode))
        return std::nullopt;
    return readBlockDevice({::major(status.st_rdev), ::minor(status.st_rdev)});
}

std::string mediumSequence(std::uint32_t majorNumber, std::uint32_t minorNumber) {
    const fs::path folder = deviceFolder({majorNumber, minorNumber});
    if (folder.empty())
        return {};
    const std::string sequence = firstLine(folder / "diskseq");
    return sequence.empty() ? firstLine(folder.parent_path() / "diskseq") : sequence;
}

std::string labelOfDevice(const std::string &name) {
    std::error_code error;
    for (fs::directory_iterator i("/dev/disk/by-label", error), end; !error && i != end;
         i.increment(error)) {
        std::error_code vanished;
        if (fs::read_symlink(i->path(), vanished).filename() != name || vanished)
            continue;
        // Bytes that would not do in a name are written as \x and two digits.
        const std::string escaped = i->path().filename();
        std::string label;
        for (std::size_t at = 0; at < escaped.size(); ++at) {
            unsigned char byte = 0;
            const char *const digits = escaped.data() + at + 2;
            if (escaped.compare(at, 2, "\\x") == 0 && at + 4 <= escaped.size() &&
                std::from_chars(digits, digits + 2, byte, 16).ptr == digits + 2) {
                label += char(byte);
                at += 3;
            } else {
                label += escaped[at];
            }
        }
        return label;
    }
    return {};
}

} // namespace brightsweep
