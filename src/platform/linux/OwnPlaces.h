#pragma once

#include "linux/SystemPlaces.h"

#include <filesystem>
#include <memory>

namespace brightsweep {

/// What each standard folder of the user is for, as StandardFolder::role. The same folder in two
/// roles is in another one than its own, whichever is asked for.
enum class FolderRole {
    None = 0,
    Config,
    Data,
    State,
    Cache,
    Trash,
    TrashItems,
    Desktop,
    Documents,
    Downloads,
    Music,
    Pictures,
    Public,
    Templates,
    Videos,
};

/// The places of this process and its user, looked at again whenever mounts or the environment
/// changed, and after a moment. Any thread.
std::shared_ptr<const SystemPlaces> ownPlaces();

/// Where the user's own settings put the folder of a role; the default where they say nothing.
std::filesystem::path folderOfRole(FolderRole role);

} // namespace brightsweep
