#pragma once

#include <filesystem>

namespace brightsweep {

/// True for a path that leads, by whatever links, to where a volume belongs that is not mounted
/// now: below a mount point of fstab(5), or below one of the folders that removable volumes are
/// mounted in. What is not found there may well come back.
bool mayLieOnAbsentVolume(const std::filesystem::path &path);

} // namespace brightsweep
