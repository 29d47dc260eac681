#pragma once

#include <filesystem>
#include <vector>

namespace brightsweep {

/// The folders of applications that were removed but for what they had written there, as long as
/// they are still the same folders. Kept with the settings: nothing else tells what they once were.
/// Any thread.
std::vector<std::filesystem::path> keptFolders();
void noteKeptFolder(const std::filesystem::path &folder);

} // namespace brightsweep
