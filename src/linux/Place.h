#pragma once

#include "foundation/FileDescriptor.h"
#include "foundation/Result.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace brightsweep {

/// Where a directory is, told by what it is and not by any text: its device and inode, as stat(2)
/// gives them, and the mount by which it was reached, as mountinfo counts them. Of two places with
/// equal device and inode but different mounts one is an alias, made by a bind mount.
struct Place {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::uint64_t mount = 0;

    bool isSameFile(const Place &other) const {
        return device == other.device && inode == other.inode;
    }
    bool operator==(const Place &) const = default;
};

/// Of an open descriptor. Asks no server: what the kernel remembers is enough.
Result<Place> placeOf(int descriptor);

/// True where both descriptors were opened by the same mount.
bool isOnSameMount(int one, int other);

/// Opens a directory as a place (O_PATH), which asks no server for it. Links on the way are
/// followed, but never those under /proc that lead to open files and other processes' roots. A
/// kernel without openat2(2) follows none. A path of any length.
Result<FileDescriptor> openPlace(std::string_view path);
/// A child directory; never through a link.
Result<FileDescriptor> openPlaceAt(int parent, const char *name);

/// The place of an open directory, that of the directory that holds it, and so on up to the root
/// of this process. RemovalError::OutsideOwnTree when the way up ends anywhere else.
Result<std::vector<Place>> climb(int directory);

} // namespace brightsweep
