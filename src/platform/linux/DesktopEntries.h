#pragma once

#include "foundation/DesktopEntry.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace brightsweep {

/// A desktop entry file in one of the folders where applications put theirs.
struct DesktopEntryFile {
    /// Its path below the folder without ".desktop", each "/" as "-".
    std::string id;
    std::filesystem::path path;
    DesktopEntry entry;
    /// The program that it is about, found as the desktop would; empty where it is missing.
    std::filesystem::path program;
    bool isUsers = false; ///< in a folder of the user's own
    /// A folder before has an entry of that id, which the desktop takes in its stead.
    bool isShadowed = false;
    /// By its own keys a launcher of this desktop that works, shadowed or not.
    bool isShown = false;
};

/// The folders of entries, the first wins; those of Flatpak and snap come last where XDG_DATA_DIRS
/// does not have them.
std::vector<std::filesystem::path> desktopEntryFolders();
/// All entries of these folders, in their order and by path in each. What is no regular file, has
/// no main group or is larger than an entry can be is left out. Reads the disk; any thread.
std::vector<DesktopEntryFile> readDesktopEntries();

/// Where the desktop would find a program, by a path or on PATH and where games and snaps are;
/// empty where it is missing.
std::filesystem::path findProgram(std::string_view name);

/// What BRIGHTSWEEP_SYSTEM_ROOT puts before the system's paths; usually empty.
std::string systemRoot();
/// The path of this machine: behind that prefix unless it is below the home or below it already.
std::filesystem::path systemPath(std::string_view path);

} // namespace brightsweep
