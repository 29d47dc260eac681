#pragma once

#include "foundation/DesktopEntry.h"
#include "platform/ApplicationSource.h"

#include <string>
#include <vector>

namespace brightsweep {

/// A desktop entry of an application that is looked at.
struct NamedEntry {
    std::string id;
    const DesktopEntry *entry = nullptr;
    std::string program; ///< path of what it starts; may be empty
};

/// Gives the application its ids, names, programs and icon. The main entry is the one whose id, the
/// end of it or program is `wanted`, else the first that is not about settings, else the first.
void describeByEntries(InstalledApplication &application, const std::vector<NamedEntry> &entries,
                       const std::string &wanted);

/// The path without links; empty where there is nothing.
std::filesystem::path realPath(const std::filesystem::path &path);
/// When a file was made, in seconds since the epoch; 0 where that cannot be told.
std::int64_t madeAt(const std::filesystem::path &path);
/// True where the user may take the item from its folder.
bool isUsersOwn(const std::filesystem::path &path);

} // namespace brightsweep
