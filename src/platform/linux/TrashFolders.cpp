#include "platform/linux/TrashFolders.h"

#include "foundation/Identity.h"
#include "foundation/Paths.h"
#include "linux/LongPath.h"
#include "linux/RemovalError.h"
#include "linux/VolumeSelection.h"
#include "platform/linux/OwnPlaces.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <optional>
#include <string>

namespace brightsweep {

namespace {

bool isOwn(const struct stat &status) {
    return status.st_uid == ::geteuid();
}
bool isOwnAndPrivate(const struct stat &status) {
    return isOwn(status) && (status.st_mode & 07777) == 0700;
}
bool isSticky(const struct stat &status) {
    return status.st_mode & S_ISVTX;
}

// A directory below an open one, on the same mount, that passes the check. One that was made and
// does not pass, as on file systems without owners, goes again.
template <typename Check>
FileDescriptor soundChild(int parent, const char *name, Check isSound, bool make = false) {
    const bool isMade = make && ::mkdirat(parent, name, 0700) == 0;
    auto child = openPlaceAt(parent, name);
    if (!child)
        return {};
    struct stat status;
    const bool isGood = isOnSameMount(child->get(), parent) &&
                        ::fstat(child->get(), &status) == 0 && isSound(status);
    if (isGood)
        return *std::move(child);
    if (isMade)
        ::unlinkat(parent, name, AT_REMOVEDIR);
    return {};
}

std::string userNumber() {
    return std::to_string(::geteuid());
}

bool isWritable(int directory) {
    return ::faccessat(directory, ".", W_OK | X_OK, AT_EACCESS) == 0;
}

bool isMissing(int parent, const char *name) {
    struct stat status;
    return ::fstatat(parent, name, &status, AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT) != 0 &&
           errno == ENOENT;
}

// The nearest folder of a path that there is.
Result<FileDescriptor> openNearest(std::filesystem::path path) {
    for (;;) {
        auto place = openPlace(path.native());
        if (place || place.error() != std::errc::no_such_file_or_directory || path == "/")
            return place;
        path = paths::parent(path);
    }
}

bool isIn(const HoldingPlace &place, int trash) {
    const auto own = placeOf(trash);
    return own && std::any_of(place.chain.begin(), place.chain.end(),
                              [&](const Place &above) { return above.isSameFile(*own); });
}

std::error_code openFolders(TrashFolder &found, const HoldingPlace &place, bool make) {
    const int trash = found.trash.get();
    if (isIn(place, trash))
        return RemovalError::InTrash;
    found.files = folderOfTrash(trash, "files", make);
    found.info = folderOfTrash(trash, "info", make);
    const auto canBeMade = [&](const FileDescriptor &folder, const char *name) {
        return folder || (!make && isMissing(trash, name) && isWritable(trash));
    };
    if (!canBeMade(found.files, "files") || !canBeMade(found.info, "info"))
        return RemovalError::NoTrash;
    return {};
}

// Nothing where the home's trash is on another mount: then nothing could be renamed into it.
std::optional<Result<TrashFolder>> homeTrash(const HoldingPlace &place, bool make) {
    const auto path = folderOfRole(FolderRole::Trash);
    const auto nearest = openNearest(path);
    const auto where = nearest ? placeOf(nearest->get()) : Result<Place>(nearest.error());
    if (!where || where->mount != place.place().mount)
        return {};
    if (make)
        makeFolders(path.native());
    TrashFolder found;
    found.original = place.path;
    auto trash = openPlace(path.native());
    if (!trash) {
        if (make || !isWritable(nearest->get()))
            return Result<TrashFolder>(RemovalError::NoTrash);
        return Result<TrashFolder>(std::move(found));
    }
    const auto own = placeOf(trash->get());
    struct stat status;
    // The link or the way to it may have been exchanged since.
    if (!own || own->mount != place.place().mount)
        return {};
    if (::fstat(trash->get(), &status) != 0 || !isOwn(status))
        return Result<TrashFolder>(RemovalError::NoTrash);
    found.trash = *std::move(trash);
    if (const auto error = openFolders(found, place, make))
        return Result<TrashFolder>(error);
    return Result<TrashFolder>(std::move(found));
}

// The top of a volume whose trash a clean would find again.
Result<FileDescriptor> topOf(const HoldingPlace &place, std::string &path) {
    VolumeScope scope{{}, homeFolder().native()};
    if (const char *prefix = std::getenv("BRIGHTSWEEP_SYSTEM_ROOT")) {
        std::error_code ignored;
        scope.prefix = std::filesystem::canonical(prefix, ignored).native();
    }
    for (const SelectedVolume &volume : selectVolumes(place.mounts->all(), scope)) {
        if (std::uint64_t(volume.mount.id) != place.place().mount ||
            volume.kind != VolumeKind::BlockDevice)
            continue;
        path = volume.mount.mountPoint;
        // The system's own root stands outside of a prefix.
        if (path == "/" && !scope.prefix.empty())
            break;
        auto top = openPlace(path);
        const auto own = top ? placeOf(top->get()) : Result<Place>(top.error());
        // Something else may be mounted over it.
        if (own && own->mount == place.place().mount)
            return top;
        break;
    }
    return RemovalError::NoTrash;
}

} // namespace

FileDescriptor sharedVolumeTrash(int top, bool make) {
    const auto shared = soundChild(top, ".Trash", isSticky);
    return shared ? soundChild(shared.get(), userNumber().c_str(), isOwnAndPrivate, make)
                  : FileDescriptor();
}

FileDescriptor singleVolumeTrash(int top, bool make) {
    return soundChild(top, (".Trash-" + userNumber()).c_str(), isOwnAndPrivate, make);
}

FileDescriptor folderOfTrash(int trash, const char *name, bool make) {
    return soundChild(trash, name, isOwn, make);
}

Result<TrashFolder> trashOfPlace(const HoldingPlace &place, bool make) {
    if (place.path.empty())
        return RemovalError::NoTrash;
    if (auto home = homeTrash(place, make))
        return *std::move(home);
    std::string path;
    const auto top = topOf(place, path);
    if (!top)
        return top.error();
    TrashFolder found;
    const std::string_view below =
        std::string_view(place.path).substr(path == "/" ? 0 : path.size());
    found.original = below.substr(std::min(below.find_first_not_of('/'), below.size()));
    found.trash = sharedVolumeTrash(top->get(), make);
    if (!found.trash)
        found.trash = singleVolumeTrash(top->get(), make);
    if (!found.trash) {
        if (!make && isWritable(top->get()) &&
            isMissing(top->get(), (".Trash-" + userNumber()).c_str()))
            return found;
        return RemovalError::NoTrash;
    }
    if (const auto error = openFolders(found, place, make))
        return error;
    return found;
}

} // namespace brightsweep
