#include "linux/VolumeSelection.h"

#include "foundation/PathBytes.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <set>

namespace brightsweep {

namespace {

constexpr std::array<std::string_view, 24> networkTypes = {
    "nfs",
    "nfs4",
    "cifs",
    "smb3",
    "smbfs",
    "ncpfs",
    "afs",
    "9p",
    "ceph",
    "glusterfs",
    "lustre",
    "davfs",
    "virtiofs",
    "vboxsf",
    "coda",
    "fuse.sshfs",
    "fuse.davfs",
    "fuse.davfs2",
    "fuse.rclone",
    "fuse.glusterfs",
    "fuse.ceph-fuse",
    "fuse.s3fs",
    "fuse.curlftpfs",
    "fuse.smbnetfs",
};

// File systems on block devices whose mounts carry a number that is no device's.
constexpr std::array<std::string_view, 3> numberlessTypes = {"btrfs", "zfs", "bcachefs"};

constexpr std::array<std::string_view, 2> imageTypes = {"squashfs", "erofs"};

constexpr std::array<std::string_view, 7> hiddenUserTypes = {
    "fuse.portal",        "fuse.gvfsd-fuse", "fuse.snapfuse",       "fuse.squashfuse",
    "fuse.squashfuse_ll", "fuse.lxcfs",      "fuse.fuse-overlayfs",
};

constexpr std::array<std::string_view, 2> bootPlaces = {"/boot", "/efi"};

template <typename Table>
bool contains(const Table &table, std::string_view text) {
    return std::find(table.begin(), table.end(), text) != table.end();
}

template <typename Table>
bool liesIn(const Table &places, std::string_view path) {
    return std::any_of(places.begin(), places.end(),
                       [&](std::string_view place) { return paths::isSameOrBelow(path, place); });
}

// "user@host:path", "host:path" or "scheme://…", as programs without a subtype of their own write.
bool namesServer(std::string_view source) {
    const auto colon = source.find(':');
    return colon != std::string_view::npos && colon > 0 && source.find('/') > colon;
}

bool isAppImage(const Mount &mount) {
    return mount.type.find("AppImage") != std::string::npos ||
           mount.mountPoint.compare(mount.mountPoint.rfind('/') + 1, 7, ".mount_") == 0;
}

std::optional<VolumeKind> kindOf(const Mount &mount, std::string_view place,
                                 const VolumeScope &scope) {
    if (contains(networkTypes, mount.type))
        return VolumeKind::Network;
    if (isUserFileSystem(mount.type)) {
        if (contains(hiddenUserTypes, mount.type) || isAppImage(mount))
            return std::nullopt;
        if (namesServer(mount.source))
            return VolumeKind::Network;
        // Services of the system mount such file systems too, but not where a user would look.
        if (ownerOfUserFileSystem(mount) > 0 || liesIn(mediaPlaces, place) ||
            paths::isSameOrBelow(mount.mountPoint, scope.home))
            return VolumeKind::UserFileSystem;
        return std::nullopt;
    }
    if (contains(imageTypes, mount.type) || isAppImage(mount))
        return std::nullopt;
    if (mount.deviceMajor != 0 || contains(numberlessTypes, mount.type))
        return VolumeKind::BlockDevice;
    return std::nullopt;
}

// What two mounts of one device have in common.
std::string deviceKey(const Mount &mount) {
    if (mount.type == "zfs")
        return "zfs " + mount.source.substr(0, mount.source.find('/'));
    return std::to_string(mount.deviceMajor) + ":" + std::to_string(mount.deviceMinor);
}

bool isAncestor(const std::vector<Mount> &mounts, const Mount &ancestor, const Mount &mount) {
    std::int32_t id = mount.parentId;
    // The table is no taller than it is long, so that a loop in a damaged one ends too.
    for (std::size_t steps = 0; steps < mounts.size(); ++steps) {
        if (id == ancestor.id)
            return true;
        const auto parent = std::find_if(mounts.begin(), mounts.end(),
                                         [&](const Mount &other) { return other.id == id; });
        if (parent == mounts.end() || parent->parentId == id)
            return false;
        id = parent->parentId;
    }
    return false;
}

// A later mount at the same place or above it hides what was there.
bool isHidden(const std::vector<Mount> &mounts, std::size_t index) {
    const Mount &mount = mounts[index];
    for (std::size_t i = 0; i < mounts.size(); ++i) {
        const bool covers = i != index && mounts[i].mountPoint == mount.mountPoint &&
                            isAncestor(mounts, mount, mounts[i]);
        if (covers)
            return true;
        if (i > index && paths::isSameOrBelow(mount.mountPoint, mounts[i].mountPoint) &&
            !isAncestor(mounts, mounts[i], mount))
            return true;
    }
    return false;
}

} // namespace

bool asksOthers(std::string_view type) {
    return contains(networkTypes, type) || isUserFileSystem(type);
}

bool isUserFileSystem(std::string_view type) {
    return type == "fuse" || type.starts_with("fuse.");
}

std::string_view mountOption(std::string_view options, std::string_view name) {
    while (!options.empty()) {
        const auto option = options.substr(0, options.find(','));
        if (option.size() > name.size() && option.starts_with(name) && option[name.size()] == '=')
            return option.substr(name.size() + 1);
        options.remove_prefix(std::min(option.size() + 1, options.size()));
    }
    return {};
}

long ownerOfUserFileSystem(const Mount &mount) {
    const auto text = mountOption(mount.superOptions, "user_id");
    long owner = -1;
    if (isUserFileSystem(mount.type))
        std::from_chars(text.data(), text.data() + text.size(), owner);
    return owner;
}

std::vector<SelectedVolume> selectVolumes(const std::vector<Mount> &mounts,
                                          const VolumeScope &scope) {
    std::vector<SelectedVolume> volumes;
    std::set<std::string> listed;
    const std::string prefix = scope.prefix == "/" ? std::string() : scope.prefix;
    for (std::size_t i = 0; i < mounts.size(); ++i) {
        if (mounts[i].mountPoint != "/" || isHidden(mounts, i) || !volumes.empty())
            continue;
        volumes.push_back(
            {mounts[i], kindOf(mounts[i], "/", scope).value_or(VolumeKind::BlockDevice)});
        listed.insert(deviceKey(mounts[i]));
    }
    // The whole of a device stands for it; a part of one only where no whole is mounted.
    std::set<std::string> whole;
    std::vector<SelectedVolume> candidates;
    for (std::size_t i = 0; i < mounts.size(); ++i) {
        const Mount &mount = mounts[i];
        if (mount.mountPoint == "/" ||
            (!prefix.empty() && !paths::isSameOrBelow(mount.mountPoint, prefix)))
            continue;
        const std::string_view place = std::string_view(mount.mountPoint).substr(prefix.size());
        if (liesIn(bootPlaces, place)) {
            listed.insert(deviceKey(mount));
            continue;
        }
        const auto kind = kindOf(mount, place, scope);
        if (!kind || isHidden(mounts, i))
            continue;
        candidates.push_back({mount, *kind});
        if (mount.root == "/")
            whole.insert(deviceKey(mount));
    }
    for (SelectedVolume &candidate : candidates) {
        const std::string key = deviceKey(candidate.mount);
        if (candidate.mount.root != "/" && whole.contains(key))
            continue;
        if (listed.insert(key).second)
            volumes.push_back(std::move(candidate));
    }
    return volumes;
}

} // namespace brightsweep
