#include "linux/LongPath.h"

#include <fcntl.h>

#include <cerrno>
#include <climits>

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
            return std::error_code(errno, std::generic_category());
        shortened.directory = std::move(next);
        path.remove_prefix(slash);
        while (path.starts_with('/'))
            path.remove_prefix(1);
    }
    // What is left of a path that ended in slashes is the directory itself.
    shortened.name = path.empty() && shortened.directory ? "." : std::string(path);
    return shortened;
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
