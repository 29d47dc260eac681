#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace brightsweep {

/// A place that the desktop or the system keeps for a purpose.
enum class StandardDirectory {
    ApplicationSupport, ///< the user's
    Library,            ///< the user's
    Preferences,        ///< the user's
    UserCaches,
    LocalCaches, ///< whose direct children may go; those that exist
    UserLogs,    ///< likewise
    LocalLogs,   ///< likewise
    Downloads,   ///< the user's
    HomeTrash,   ///< the folder that holds the trashed items themselves
    Applications,
    Home,
    Temporary,
};

/// Where the standard places are on this system. Answers are computed at each call from the
/// environment and the disk; safe from every thread.
class StandardDirectories {
public:
    virtual ~StandardDirectories();
    virtual std::string unavailableReason() const { return {}; }

    /// Every folder of that purpose, in order of use; the first one is meant unless said otherwise.
    virtual std::vector<std::filesystem::path> paths(StandardDirectory directory) = 0;
    /// The first of them, or an empty path.
    std::filesystem::path first(StandardDirectory directory);

    /// The folders of the user's trashed items on a volume, by the rules of the freedesktop
    /// document: `$top/.Trash/$uid/files`, then `$top/.Trash-$uid/files`; those that are sound.
    virtual std::vector<std::filesystem::path>
    trashesOfVolume(const std::filesystem::path &top) = 0;

    /// The path on this machine of a system-wide path: below the prefix that
    /// BRIGHTSWEEP_SYSTEM_ROOT names, if any.
    virtual std::filesystem::path systemPath(const std::filesystem::path &path) = 0;
};

} // namespace brightsweep
