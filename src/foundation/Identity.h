#pragma once

#include <filesystem>

namespace brightsweep {

/// Names the settings, the desktop entry, the bus name, the metainfo and the policy action.
inline constexpr const char bundleIdentifier[] = "com.norvmac.DeskSweeperPro";
inline constexpr const char programVersion[] = "4.0";
/// The folder of the program's own data below the user's application support folder.
inline constexpr const char supportFolderName[] = "Brightsweep";
/// The file of the log in that folder.
inline constexpr const char logFileName[] = "norvex.log";

/// The user's home: $HOME where it is absolute, else the account's.
std::filesystem::path homeFolder();

/// The folder that a variable of the XDG base directories names, or that below the home where the
/// variable is missing, empty or relative.
std::filesystem::path environmentFolder(const char *variable, const char *belowHome);

} // namespace brightsweep
