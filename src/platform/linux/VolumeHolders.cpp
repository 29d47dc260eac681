#include "platform/linux/VolumeHolders.h"

#include "foundation/Paths.h"
#include "foundation/SmallFile.h"
#include "platform/linux/LinuxFileHolders.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <system_error>

namespace brightsweep {

namespace {

namespace fs = std::filesystem;

bool liesOn(const fs::path &link, const std::vector<Mount> &held) {
    // The text of the link alone: to follow it could mean to ask a dead server.
    std::error_code error;
    const fs::path target = fs::read_symlink(link, error);
    return !error && std::any_of(held.begin(), held.end(), [&](const Mount &mount) {
        return paths::isSameOrBelow(target.native(), mount.mountPoint);
    });
}

bool opensFileOn(const fs::path &descriptorFacts, const std::vector<Mount> &held) {
    std::ifstream file(descriptorFacts);
    std::string word;
    std::int32_t id = 0;
    while (file >> word) {
        if (word == "mnt_id:" && file >> id)
            return std::any_of(held.begin(), held.end(),
                               [&](const Mount &mount) { return mount.id == id; });
    }
    return false;
}

bool holds(const fs::path &process, const std::vector<Mount> &held) {
    for (const char *link : {"cwd", "root", "exe"}) {
        if (liesOn(process / link, held))
            return true;
    }
    std::error_code error;
    for (fs::directory_iterator i(process / "fd", error), end; !error && i != end;
         i.increment(error)) {
        if (opensFileOn(process / "fdinfo" / i->path().filename(), held) || liesOn(*i, held))
            return true;
    }
    std::ifstream maps(process / "maps");
    for (std::string line; std::getline(maps, line);) {
        for (const Mount &mount : held) {
            if (mapsDevice(line, mount.deviceMajor, mount.deviceMinor))
                return true;
        }
    }
    return false;
}

} // namespace

bool mapsDevice(std::string_view line, std::uint32_t majorNumber, std::uint32_t minorNumber) {
    // Address, rights, offset, device, inode, and behind them the path.
    for (int field = 0; field < 3; ++field) {
        const auto blank = line.find(' ');
        if (blank == std::string_view::npos)
            return false;
        line.remove_prefix(blank + 1);
    }
    const auto blank = line.find(' ');
    const auto colon = line.substr(0, blank).find(':');
    if (blank == std::string_view::npos || colon == std::string_view::npos)
        return false;
    std::uint32_t numbers[2] = {};
    const char *const start = line.data();
    const bool read =
        std::from_chars(start, start + colon, numbers[0], 16).ptr == start + colon &&
        std::from_chars(start + colon + 1, start + blank, numbers[1], 16).ptr == start + blank;
    return read && numbers[0] == majorNumber && numbers[1] == minorNumber;
}

std::vector<std::string> holdersOf(const std::vector<Mount> &held) {
    std::vector<std::string> names;
    for (const int process : runningProcesses()) {
        const fs::path folder = "/proc/" + std::to_string(process);
        if (!holds(folder, held))
            continue;
        const auto comm = readSmallFile(folder / "comm", 64);
        if (!comm)
            continue;
        const std::string name = (*comm).substr(0, (*comm).find('\n'));
        if (std::find(names.begin(), names.end(), name) == names.end())
            names.push_back(name);
    }
    return names;
}

} // namespace brightsweep
