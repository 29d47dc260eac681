#pragma once

#include "foundation/FileDescriptor.h"
#include "foundation/Result.h"
#include "linux/Mounts.h"
#include "linux/Place.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

struct stat;

namespace brightsweep {

/// The directory that holds items which are to be removed, reached as every removal reaches it: the
/// root is opened anew and compared with what it was, then each step down is taken by descriptor,
/// through no link and across no mount.
struct HoldingPlace {
    std::vector<Place> chain; ///< its own place first; see climb()
    std::string path;         ///< where it is now; empty where the kernel cannot say
    std::shared_ptr<const MountSnapshot> mounts;

    const Place &place() const { return chain.front(); }
};

/// Gives its descriptor, opened as a place, and tells of it. `way` leads from the root to the
/// directory: components with one slash between two, or empty for the root itself. The errors are
/// those of RemovalError and of the system; what has gone is ENOENT.
Result<FileDescriptor> openHoldingPlace(std::string_view root, std::uint64_t device,
                                        std::uint64_t inode, std::string_view way,
                                        HoldingPlace &place);

/// What a name in that directory stands for, never what a link leads to. RemovalError::HoldsVolume
/// where something is mounted on it or below it; nothing that is mounted is asked then.
std::error_code lookAt(int directory, const HoldingPlace &place, const std::string &name,
                       struct stat &item);

/// True for one component of a path: not empty, not "." or "..", without "/" and NUL.
bool isPlainName(std::string_view name);

} // namespace brightsweep
