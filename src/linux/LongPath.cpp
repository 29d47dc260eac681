#include "linux/LongPath.h"

#include "foundation/LastError.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <climits>
#include <filesystem>
#include <utility>
#include <vector>

namespace brightsweep {

int ShortPath::base() const {
    return directory ? directory.get() : AT_FDCWD;
}

Result<ShortPath> shortenPath(std::string_view path) {
    ShortPath shortened;
    while (path.size() >= PATH_MAX) {
        const auto slash = path.rfind('/', PATH_MAX - 2);
        if (slash == path.npos || slash == 0)
            return std::errc::filename_too_long;
        const std::string head(path.substr(0, slash));
        FileDescriptor next(
            ::openat(shortened.base(), head.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
        if (!next)
            return lastError();
        shortened.directory = std::move(next);
        path.remove_prefix(slash);
        while (path.starts_with('/'))
            path.remove_prefix(1);
    }
    // What is left of a path that ended in slashes is the directory itself.
    shortened.name = path.empty() && shortened.directory ? "." : std::string(path);
    return shortened;
}

namespace {

constexpr int directoryFlags = O_PATH | O_DIRECTORY | O_CLOEXEC;
constexpr int maximumLinks = 40; // as many as the kernel follows

// The components in reverse, the first one last.
void push(std::vector<std::string> &pending, std::string_view path) {
    while (!path.empty()) {
        const auto slash = path.rfind('/');
        const auto name = slash == path.npos ? path : path.substr(slash + 1);
        if (!name.empty() && name != ".")
            pending.emplace_back(name);
        path = path.substr(0, slash == path.npos ? 0 : slash);
    }
}

} // namespace

Result<std::string> canonicalLongPath(std::string_view path) {
    if (path.empty())
        return std::errc::no_such_file_or_directory;
    std::vector<std::string> pending; // to be opened, the next one last
    std::vector<std::string> names;   // of what is open
    push(pending, path);
    if (!path.starts_with('/')) {
        std::error_code error;
        push(pending, std::filesystem::current_path(error).native());
        if (error)
            return error;
    }
    FileDescriptor open(::open("/", directoryFlags));
    for (int links = 0; open && !pending.empty();) {
        const std::string name = std::move(pending.back());
        pending.pop_back();
        FileDescriptor next(::openat(open.get(), name.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
        struct stat status {};
        if (!next || ::fstat(next.get(), &status) != 0)
            return lastError();
        if (S_ISLNK(status.st_mode)) {
            std::string target(PATH_MAX, '\0');
            const ssize_t length = ::readlinkat(next.get(), "", target.data(), target.size());
            if (length <= 0)
                return lastError();
            if (++links > maximumLinks)
                return std::errc::too_many_symbolic_link_levels;
            target.resize(std::size_t(length));
            push(pending, target);
            if (target.starts_with('/')) {
                open = FileDescriptor(::open("/", directoryFlags));
                names.clear();
            }
            continue;
        }
        if (name != "..")
            names.push_back(name);
        else if (!names.empty())
            names.pop_back();
        open = std::move(next);
    }
    if (!open)
        return lastError();
    std::string canonical;
    for (const std::string &name : names)
        canonical += "/" + name;
    return canonical.empty() ? "/" : canonical;
}

void makeFolders(const std::string &path) {
    for (auto slash = path.find('/', 1);; slash = path.find('/', slash + 1)) {
        ::mkdir(path.substr(0, slash).c_str(), 0700);
        if (slash == path.npos)
            return;
    }
}

std::string currentPath(int directory) {
    const std::string link = "/proc/self/fd/" + std::to_string(directory);
    std::string path(PATH_MAX, '\0');
    const ssize_t length = ::readlink(link.c_str(), path.data(), path.size());
    if (length <= 0 || std::size_t(length) >= path.size())
        return {};
    path.resize(std::size_t(length));
    return path;
}

} // namespace brightsweep
