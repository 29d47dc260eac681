// The release tool: gives memory that holds copies of files back to the system.
//
// As administrator it writes back what is dirty and drops the page cache, dentries and inodes. As a
// user it asks the kernel to reclaim the file pages of the control groups below the one that is
// delegated to the user. It prints what it did, and ends with 1 when it could do nothing.

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

namespace {

constexpr char dropCachesFile[] = "/proc/sys/vm/drop_caches";
constexpr char groupsFolder[] = "/sys/fs/cgroup";
constexpr int maximumDepth = 32;

// A path of the system, below the prefix that BRIGHTSWEEP_SYSTEM_ROOT names.
std::filesystem::path systemPath(const std::string &path) {
    const char *root = std::getenv("BRIGHTSWEEP_SYSTEM_ROOT");
    return std::string(root ? root : "") + path;
}

// 0, or an errno. The kernel takes each of these files in one write.
int writeWhole(const std::filesystem::path &path, const std::string &text) {
    const int file = ::open(path.c_str(), O_WRONLY | O_CLOEXEC);
    if (file < 0)
        return errno;
    const int error = ::write(file, text.data(), text.size()) < 0 ? errno : 0;
    ::close(file);
    return error;
}

std::string textOf(const std::filesystem::path &path) {
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), {}};
}

// The value behind a name in a table of lines "name value"; an empty name means the first value.
std::uint64_t numberIn(const std::string &text, const std::string &name) {
    const std::string key = name.empty() ? name : name + ' ';
    std::size_t at = 0;
    while (text.compare(at, key.size(), key) != 0) {
        at = text.find('\n', at);
        if (at == std::string::npos)
            return 0;
        ++at;
    }
    return std::strtoull(text.c_str() + at + key.size(), nullptr, 10);
}

int dropCaches() {
    ::sync();
    if (const int error = writeWhole(systemPath(dropCachesFile), "3")) {
        std::printf("purge: the caches cannot be dropped: %s\n", std::strerror(error));
        return 1;
    }
    std::printf(
        "purge: wrote back what was dirty and dropped the page cache, dentries and inodes\n");
    return 0;
}

bool isOwn(const std::filesystem::path &folder) {
    struct stat facts {};
    return ::stat(folder.c_str(), &facts) == 0 && S_ISDIR(facts.st_mode) &&
           facts.st_uid == ::getuid();
}

// The highest group on the way to that of this process which belongs to the user; else the one in
// which the session's services run.
std::optional<std::filesystem::path> delegatedGroup() {
    const std::filesystem::path groups = systemPath(groupsFolder);
    const std::string table = textOf(systemPath("/proc/self/cgroup"));
    std::filesystem::path group = groups;
    if (table.starts_with("0::/")) {
        const std::filesystem::path own = table.substr(4, table.find('\n') - 4);
        for (const auto &part : own) {
            group /= part;
            if (isOwn(group))
                return group;
        }
    }
    const std::string user = std::to_string(::getuid());
    group = groups / "user.slice" / ("user-" + user + ".slice") / ("user@" + user + ".service");
    return isOwn(group) ? std::optional(group) : std::nullopt;
}

struct Reclaim {
    unsigned groups = 0;
    std::uint64_t bytes = 0;
    int lastError = 0;
};

// A group answers for all below it. Only pages of files are asked for: what is in use by programs
// is not to be swapped out.
bool reclaimGroup(const std::filesystem::path &group, Reclaim &done) {
    const auto file = group / "memory.reclaim";
    if (::access(file.c_str(), W_OK) != 0) {
        done.lastError = errno;
        return false;
    }
    const std::uint64_t inactive = numberIn(textOf(group / "memory.stat"), "inactive_file");
    if (inactive == 0)
        return true;
    const std::uint64_t before = numberIn(textOf(group / "memory.current"), {});
    const std::string amount = std::to_string(inactive);
    int error = writeWhole(file, amount + " swappiness=0");
    if (error == EINVAL)
        error = writeWhole(file, amount);
    // EAGAIN: less than that could be had.
    if (error != 0 && error != EAGAIN) {
        done.lastError = error;
        return false;
    }
    const std::uint64_t after = numberIn(textOf(group / "memory.current"), {});
    ++done.groups;
    done.bytes += before > after ? before - after : 0;
    return true;
}

void reclaimBelow(const std::filesystem::path &group, int depth, Reclaim &done) {
    std::error_code error;
    std::vector<std::filesystem::path> children;
    for (std::filesystem::directory_iterator entry(group, error), end; !error && entry != end;
         entry.increment(error)) {
        if (entry->is_directory(error) && !entry->is_symlink(error))
            children.push_back(entry->path());
    }
    std::sort(children.begin(), children.end());
    for (const auto &child : children) {
        if (!reclaimGroup(child, done) && depth < maximumDepth)
            reclaimBelow(child, depth + 1, done);
    }
}

int reclaimAsUser() {
    const auto group = delegatedGroup();
    if (!group) {
        std::printf("purge: no control group is delegated to this user; nothing was released\n");
        return 1;
    }
    Reclaim done;
    reclaimBelow(*group, 0, done);
    if (done.groups == 0) {
        std::printf("purge: no control group below %s could be asked for memory%s%s; nothing was "
                    "released\n",
                    group->c_str(), done.lastError ? ": " : "",
                    done.lastError ? std::strerror(done.lastError) : "");
        return 1;
    }
    std::printf("purge: %u control groups gave back %llu bytes\n", done.groups,
                static_cast<unsigned long long>(done.bytes));
    return 0;
}

} // namespace

int main() {
    return ::geteuid() == 0 ? dropCaches() : reclaimAsUser();
}
