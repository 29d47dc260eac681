#include "platform/linux/LinuxFileHolders.h"

#include "foundation/SmallFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <algorithm>
#include <cinttypes>
#include <cstdio>
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

template <typename Each>
void forEachOtherProcess(Each each) {
    for (const int process : runningProcesses()) {
        if (process != ::getpid())
            each(fs::path("/proc") / std::to_string(process));
    }
}

// The mode of a link in fd tells how the file was opened; see proc(5).
bool isForWriting(const fs::path &link) {
    struct stat status;
    return ::lstat(link.c_str(), &status) == 0 && (status.st_mode & S_IWUSR);
}

// What a link of /proc leads to, as the system remembers it.
void addIdentity(const fs::path &link, std::vector<FileIdentity> &files) {
    struct statx status;
    if (::statx(AT_FDCWD, link.c_str(), AT_STATX_DONT_SYNC | AT_NO_AUTOMOUNT,
                STATX_TYPE | STATX_INO, &status) == 0 &&
        S_ISREG(status.stx_mode))
        files.push_back({::makedev(status.stx_dev_major, status.stx_dev_minor), status.stx_ino});
}

// "start-end rw-s offset major:minor inode path": pages that are written back to the file.
void addWrittenMapping(const std::string &line, std::vector<FileIdentity> &files) {
    char rights[5] = {};
    unsigned major = 0;
    unsigned minor = 0;
    std::uint64_t inode = 0;
    if (std::sscanf(line.c_str(), "%*s %4s %*s %x:%x %" SCNu64, rights, &major, &minor, &inode) ==
            4 &&
        rights[1] == 'w' && rights[3] == 's' && inode != 0)
        files.push_back({::makedev(major, minor), inode});
}

} // namespace

std::vector<int> runningProcesses() {
    std::vector<int> processes;
    std::error_code error;
    for (fs::directory_iterator i("/proc", error), end; !error && i != end; i.increment(error)) {
        const std::string name = i->path().filename();
        if (name.find_first_not_of("0123456789") == name.npos)
            processes.push_back(std::stoi(name));
    }
    std::sort(processes.begin(), processes.end());
    return processes;
}

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
    forEachOtherProcess([&](const fs::path &process) {
        constexpr std::size_t longestName = 64;
        const auto words = readSmallFile(process / "comm", longestName);
        if (!words)
            return;
        const std::string program = (*words).substr(0, (*words).find('\n'));
        for (const std::string &path : pathsOf(process))
            held.push_back({path, program});
    });
    return held;
}

std::vector<FileIdentity> LinuxFileHolders::writtenFiles() {
    std::vector<FileIdentity> written;
    forEachOtherProcess([&](const fs::path &process) {
        std::error_code error;
        for (fs::directory_iterator i(process / "fd", error), end; !error && i != end;
             i.increment(error)) {
            if (isForWriting(i->path()))
                addIdentity(i->path(), written);
        }
        std::ifstream maps(process / "maps");
        for (std::string line; std::getline(maps, line);)
            addWrittenMapping(line, written);
    });
    std::sort(written.begin(), written.end());
    return written;
}

} // namespace brightsweep
