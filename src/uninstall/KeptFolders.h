#pragma once

#include <filesystem>
#include <vector>

namespace brightsweep {

/// The folders of applications that were removed but for what they had written there, as long as
/// they are still the same folders. Kept with the settings: nothing else tells what they once were.
/// Any thread.
std::vector<std::filesystem::path> keptFolders();
/// Adds one, and forgets those that have certainly gone.
void noteKeptFolder(const std::filesystem::path &folder);
/// For one that this program has removed: a new folder may get its name and its number.
void forgetKeptFolder(const std::filesystem::path &folder);

} // namespace brightsweep
