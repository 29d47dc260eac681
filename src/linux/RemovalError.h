#pragma once

#include <system_error>

namespace brightsweep {

/// Why a removal refuses an item, where no error number of the system says it.
enum class RemovalError {
    HoldsVolume =
        1,         ///< something is mounted at it or below it; equals errc::device_or_resource_busy
    CrossesVolume, ///< something is mounted between its root and it; equals that, too
    ProtectedPlace, ///< a folder that outlives every removal
    PartOfSystem,   ///< outside of what an administrator's removal may touch
    Changed,        ///< the item or its root is no longer what it was when it was found
    MountsUnknown,  ///< the mount table cannot be read
    OutsideOwnTree, ///< reached through another root or another view of the mounts
    NoTrash,        ///< its volume has no trash of the user's
    InTrash,        ///< it lies in the trash already
    Immutable,      ///< a flag of its file system keeps it as it is, for an administrator as well
    AppendOnly,     ///< a flag lets it only grow, for an administrator as well
};

std::error_code make_error_code(RemovalError error);
/// True for what a flag of the file system keeps, so that rights do not help against it.
bool isKeptByFlag(const std::error_code &error);

} // namespace brightsweep

template <>
struct std::is_error_code_enum<brightsweep::RemovalError> : std::true_type {};
