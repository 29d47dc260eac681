#include "linux/Place.h"

#include "foundation/LastError.h"
#include "linux/KernelFileSystems.h"
#include "linux/LongPath.h"
#include "linux/RemovalError.h"

#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/sysmacros.h>

#include <cerrno>
#include <charconv>
#include <climits>
#include <fstream>

namespace brightsweep {

namespace {

constexpr int placeFlags = O_PATH | O_DIRECTORY | O_CLOEXEC;

// For kernels before 5.8, whose statx does not tell the mount; see proc(5).
Result<std::uint64_t> mountByFdinfo(int descriptor) {
    constexpr std::string_view key = "mnt_id:";
    std::ifstream file("/proc/self/fdinfo/" + std::to_string(descriptor));
    for (std::string line; std::getline(file, line);) {
        if (!line.starts_with(key))
            continue;
        const auto number = line.find_first_not_of(" \t", key.size());
        std::uint64_t mount = 0;
        if (number != line.npos &&
            std::from_chars(line.data() + number, line.data() + line.size(), mount).ec ==
                std::errc())
            return mount;
    }
    return RemovalError::MountsUnknown;
}

// openat2(2), for kernels that have it; ENOSYS or EPERM where they do not, or a sandbox forbids it.
FileDescriptor openWithoutMagic(int base, const char *name) {
    open_how how{};
    how.flags = placeFlags;
    how.resolve = RESOLVE_NO_MAGICLINKS;
    return FileDescriptor(int(::syscall(SYS_openat2, base, name, &how, sizeof how)));
}

// For kernels before 5.6: component by component, through no link at all.
Result<FileDescriptor> openByComponents(std::string_view path) {
    FileDescriptor directory(::open(path.starts_with('/') ? "/" : ".", placeFlags));
    while (directory && !path.empty()) {
        const std::string name(path.substr(0, path.find('/')));
        path.remove_prefix(std::min(name.size() + 1, path.size()));
        if (name.empty())
            continue;
        auto next = openPlaceAt(directory.get(), name.c_str());
        if (!next)
            return next;
        directory = *std::move(next);
        if (isOnKernelFileSystem(directory.get()))
            return std::errc::permission_denied;
    }
    if (!directory)
        return lastError();
    return directory;
}

} // namespace

Result<Place> placeOf(int descriptor) {
    struct statx status;
    if (::statx(descriptor, "", AT_EMPTY_PATH | AT_STATX_DONT_SYNC | AT_NO_AUTOMOUNT,
                STATX_TYPE | STATX_INO | STATX_MNT_ID, &status) != 0)
        return lastError();
    Place place{::makedev(status.stx_dev_major, status.stx_dev_minor), status.stx_ino,
                status.stx_mnt_id};
    if (!(status.stx_mask & STATX_MNT_ID)) {
        const auto mount = mountByFdinfo(descriptor);
        if (!mount)
            return mount.error();
        place.mount = *mount;
    }
    return place;
}

Result<FileDescriptor> openPlaceAt(int parent, const char *name) {
    FileDescriptor place(::openat(parent, name, placeFlags | O_NOFOLLOW));
    if (!place)
        return lastError();
    return place;
}

bool isOnSameMount(int one, int other) {
    const auto first = placeOf(one);
    const auto second = placeOf(other);
    return first && second && first->mount == second->mount;
}

Result<FileDescriptor> openPlace(std::string_view path) {
    FileDescriptor place;
    // In pieces that one call takes; see shortenPath(), which follows every kind of link.
    std::string_view rest = path;
    FileDescriptor base;
    while (rest.size() >= PATH_MAX) {
        const auto slash = rest.rfind('/', PATH_MAX - 2);
        if (slash == rest.npos || slash == 0)
            return std::errc::filename_too_long;
        base = openWithoutMagic(base ? base.get() : AT_FDCWD,
                                std::string(rest.substr(0, slash)).c_str());
        if (!base)
            break;
        rest.remove_prefix(std::min(rest.find_first_not_of('/', slash), rest.size()));
    }
    if (base || rest.size() == path.size())
        place = openWithoutMagic(base ? base.get() : AT_FDCWD,
                                 rest.empty() ? "." : std::string(rest).c_str());
    if (!place && (errno == ENOSYS || errno == EPERM))
        return openByComponents(path);
    if (!place)
        return lastError();
    return place;
}

Result<std::vector<Place>> climb(int directory) {
    std::vector<Place> chain;
    FileDescriptor above;
    for (int current = directory;; current = above.get()) {
        const auto place = placeOf(current);
        if (!place)
            return place.error();
        // ".." of a root is that root.
        if (!chain.empty() && chain.back() == *place)
            break;
        chain.push_back(*place);
        FileDescriptor next(::openat(current, "..", placeFlags));
        if (!next)
            return lastError();
        above = std::move(next);
    }
    const FileDescriptor root(::open("/", placeFlags));
    const auto own = root ? placeOf(root.get()) : Result<Place>(lastError());
    if (!own)
        return own.error();
    if (!(chain.back() == *own))
        return RemovalError::OutsideOwnTree;
    return chain;
}

} // namespace brightsweep
