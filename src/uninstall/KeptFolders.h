#pragma once

#include <cstdint>
#include <filesystem>
#include <vector>

namespace brightsweep {

/// A folder of an application that was removed but for what it had written there.
struct KeptFolder {
    std::filesystem::path path;
    /// When the last of what was kept came there, in nanoseconds since the epoch: what came later
    /// is not the application's.
    std::int64_t lastCame = 0;

    bool operator==(const KeptFolder &) const = default;
};

/// All of them, as long as they are still the same folders. Kept with the settings: nothing else
/// tells what they once were. Any thread.
std::vector<KeptFolder> keptFolders();
/// Adds one, and forgets those that have certainly gone.
void noteKeptFolder(const KeptFolder &folder);
/// For one that this program has removed: a new folder may get its name and its number.
void forgetKeptFolder(const std::filesystem::path &folder);

} // namespace brightsweep
