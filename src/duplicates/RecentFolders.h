#pragma once

#include <filesystem>
#include <vector>

namespace brightsweep {

/// The folders that were searched for duplicates last, the latest first, five at most; kept with
/// the settings. Whether one is still there is not looked at.
std::vector<std::filesystem::path> recentFolders();
void rememberFolder(const std::filesystem::path &folder);

} // namespace brightsweep
