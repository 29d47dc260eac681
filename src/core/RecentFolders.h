#pragma once

#include <QLatin1String>

#include <filesystem>
#include <vector>

namespace brightsweep {

/// The folders that a page worked on last, the latest first, five at most; kept with the settings
/// under the key. Whether one is still there is not looked at.
std::vector<std::filesystem::path> recentFolders(QLatin1String key);
void rememberFolder(QLatin1String key, const std::filesystem::path &folder);

} // namespace brightsweep
