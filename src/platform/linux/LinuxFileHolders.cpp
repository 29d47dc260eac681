#include "platform/linux/LinuxFileHolders.h"

#include "foundation/SmallFile.h"

#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <set>
#include <system_error>

namespace brightsweep {

namespace {

namespace fs = std::filesystem;

// What a link of /proc says: a path, or words such as "socket:[7]".
void addTarget(const fs::path &link, std::set<std::string> &paths) {
    std::error_code error;
    const fs::path target = fs::read_symlink(link, error);
    if (!error && target.is_absolute())
        paths.insert(target.native());
}

std::set<std::string> pathsOf(const fs::path &process) {
    std::set<std::string> paths;
    addTarget(process / "cwd", paths);
    addTarget(process / "exe", paths);
    std::error_code error;
    for (fs::directory_iterator i(process / "fd", error), end; !error && i != end;
         i.increment(error))
        addTarget(i->path(), paths);
    std::ifstream maps(process / "maps");
    for (std::string line; std::getline(maps, line);) {
        std::string path = mappedPath(line);
        if (!path.empty())
            paths.insert(std::move(path));
    }
    return paths;
}

} // namespace

std::string mappedPath(std::string_view line) {
    const auto start = line.find('/');
    if (start == line.npos)
        return {};
    std::string path;
    constexpr std::string_view lineEnd = "\\012"; // the one escape that the system writes here
    for (std::size_t i = start; i < line.size(); ++i) {
        if (line.substr(i).starts_with(lineEnd)) {
            path += '\n';
            i += lineEnd.size() - 1;
        } else {
            path += line[i];
        }
    }
    return path;
}

std::vector<HeldFile> LinuxFileHolders::heldFiles() {
    std::vector<HeldFile> held;
    const std::string own = std::to_string(::getpid());
    std::error_code error;
    for (fs::directory_iterator i("/proc", error), end; !error && i != end; i.increment(error)) {
        const std::string name = i->path().filename();
        const bool isProcess = std::all_of(name.begin(), name.end(),
                                           [](char digit) { return digit >= '0' && digit <= '9'; });
        if (!isProcess || name == own)
            continue;
        constexpr std::size_t longestName = 64;
        const auto words = readSmallFile(i->path() / "comm", longestName);
        if (!words)
            continue;
        const std::string program = (*words).substr(0, (*words).find('\n'));
        for (const std::string &path : pathsOf(i->path()))
            held.push_back({path, program});
    }
    return held;
}

} // namespace brightsweep
