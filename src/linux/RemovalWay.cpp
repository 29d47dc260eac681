#include "linux/RemovalWay.h"

#include "foundation/LastError.h"
#include "linux/KernelFileSystems.h"
#include "linux/LongPath.h"
#include "linux/RemovalError.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>

namespace brightsweep {

namespace {

// The mount of a place, which must be this process's own and hold storage.
std::error_code refusalOfMount(const MountSnapshot &mounts, const Place &place) {
    if (!mounts.isKnown())
        return RemovalError::MountsUnknown;
    const Mount *mount = mounts.find(place.mount);
    if (!mount)
        return RemovalError::OutsideOwnTree;
    return isKernelFileSystem(mount->type) ? std::make_error_code(std::errc::permission_denied)
                                           : std::error_code();
}

// True when something is mounted below a directory whose path cannot be told: each mount on the
// same file system view is looked at from its own end.
bool holdsMountByClimbing(const MountSnapshot &mounts, const Place &directory) {
    return std::any_of(mounts.all().begin(), mounts.all().end(), [&](const Mount &mount) {
        const Mount *parent = mounts.find(std::uint64_t(mount.parentId));
        if (!parent || std::uint64_t(parent->id) != directory.mount)
            return false;
        const auto slash = mount.mountPoint.rfind('/');
        const auto above = openPlace(slash == 0 ? "/" : mount.mountPoint.substr(0, slash));
        const auto chain = above ? climb(above->get()) : Result<std::vector<Place>>(above.error());
        // What cannot be told counts as held.
        return !chain || std::find(chain->begin(), chain->end(), directory) != chain->end();
    });
}

bool holdsMount(int directory, const HoldingPlace &place, const std::string &name) {
    if (!place.path.empty())
        return place.mounts->holdsMountPoint((place.path == "/" ? std::string() : place.path) +
                                             '/' + name);
    struct statx status;
    if (::statx(directory, name.c_str(), AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT | AT_STATX_DONT_SYNC,
                STATX_TYPE, &status) != 0)
        return false;
    if ((status.stx_attributes & STATX_ATTR_MOUNT_ROOT) != 0)
        return true;
    if (!S_ISDIR(status.stx_mode))
        return false;
    const auto child = openPlaceAt(directory, name.c_str());
    const auto own = child ? placeOf(child->get()) : Result<Place>(child.error());
    return own && holdsMountByClimbing(*place.mounts, *own);
}

} // namespace

bool isPlainName(std::string_view name) {
    return !name.empty() && name != "." && name != ".." && name.find('/') == name.npos &&
           name.find('\0') == name.npos;
}

Result<FileDescriptor> openHoldingPlace(std::string_view root, std::uint64_t device,
                                        std::uint64_t inode, std::string_view way,
                                        HoldingPlace &holder) {
    auto directory = openPlace(root);
    if (!directory)
        return directory.error();
    const auto rootPlace = placeOf(directory->get());
    if (!rootPlace)
        return rootPlace.error();
    if (rootPlace->device != device || rootPlace->inode != inode)
        return RemovalError::Changed;
    holder.mounts = ownMounts().currentWith(rootPlace->mount);
    if (const auto refusal = refusalOfMount(*holder.mounts, *rootPlace))
        return refusal;
    while (!way.empty()) {
        const auto end = std::min(way.find('/'), way.size());
        const std::string name(way.substr(0, end));
        if (!isPlainName(name) || end + 1 == way.size())
            return std::errc::invalid_argument;
        way.remove_prefix(std::min(end + 1, way.size()));
        auto next = openPlaceAt(directory->get(), name.c_str());
        if (!next)
            return next.error();
        const auto place = placeOf(next->get());
        if (!place)
            return place.error();
        if (place->mount != rootPlace->mount)
            return RemovalError::CrossesVolume;
        directory = std::move(next);
    }
    auto chain = climb(directory->get());
    if (!chain)
        return chain.error();
    holder.chain = *std::move(chain);
    holder.path = currentPath(directory->get());
    return directory;
}

std::error_code lookAt(int directory, const HoldingPlace &place, const std::string &name,
                       struct stat &item) {
    if (holdsMount(directory, place, name))
        return RemovalError::HoldsVolume;
    if (::fstatat(directory, name.c_str(), &item, AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT) != 0)
        return lastError();
    return {};
}

} // namespace brightsweep
