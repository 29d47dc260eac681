#pragma once

#include "linux/MountTable.h"
#include "platform/FileOperations.h"

#include <string>
#include <string_view>
#include <vector>

namespace brightsweep {

/// The lower, upper and work folders that an overlay's superblock options name, as it was mounted,
/// so that one may be relative to a folder that is told nowhere. Where an escape may or may not
/// have been undone already, both readings are given.
std::vector<std::string> overlayLayers(std::string_view superOptions);

/// What FileOperations::repeatedByOverlays() gives, by this mount table. The root is canonical.
std::vector<FileIdentity> repeatedByOverlays(const std::vector<Mount> &mounts,
                                             const std::string &root);

} // namespace brightsweep
