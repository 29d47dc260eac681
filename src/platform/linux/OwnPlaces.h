#pragma once

#include "linux/CategoryTable.h"
#include "linux/SystemPlaces.h"

#include <filesystem>
#include <memory>

namespace brightsweep {

/// The places of this process and its user, looked at again whenever mounts or the environment
/// changed, and after a moment. Any thread.
std::shared_ptr<const SystemPlaces> ownPlaces();

/// Where the user's own settings put the folder of a role; the default where they say nothing.
std::filesystem::path folderOfRole(FolderRole role);

} // namespace brightsweep
