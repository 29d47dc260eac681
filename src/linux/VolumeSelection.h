#pragma once

#include "linux/MountTable.h"

#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace brightsweep {

/// What stands behind a mount. Only a block device answers for itself; the two others ask another
/// program or machine, which may be dead.
enum class VolumeKind { BlockDevice, Network, UserFileSystem };

struct SelectedVolume {
    Mount mount;
    VolumeKind kind = VolumeKind::BlockDevice;
};

/// Where removable volumes are mounted.
inline constexpr std::array<std::string_view, 3> mediaPlaces = {"/media", "/run/media", "/mnt"};

/// Where the mounts that a user would call volumes are looked for.
struct VolumeScope {
    /// With a prefix only mounts at it or below it count, besides the root. Absolute, canonical.
    std::string prefix;
    std::string home;
};

/// The mounts of the table that a user would call volumes: the root first, then in mount order, of
/// each device one. A pure function of its arguments that touches no file system.
std::vector<SelectedVolume> selectVolumes(const std::vector<Mount> &mounts,
                                          const VolumeScope &scope);

/// True for fuse and its subtypes, but not for fuseblk, which holds a block device.
bool isUserFileSystem(std::string_view type);

/// True where a file system of that type asks another machine or program, which may be dead.
bool asksOthers(std::string_view type);

/// The number of the user who made such a mount; -1 for any other mount.
long ownerOfUserFileSystem(const Mount &mount);

/// The value of an option in a list such as "rw,addr=10.0.0.1"; empty where it is missing.
std::string_view mountOption(std::string_view options, std::string_view name);

} // namespace brightsweep
