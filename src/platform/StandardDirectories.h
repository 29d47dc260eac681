#pragma once

#include "linux/CategoryTable.h"
#include "platform/FileOperations.h"

#include <filesystem>
#include <string>
#include <vector>

namespace brightsweep {

/// A place that the desktop or the system keeps for a purpose.
enum class StandardDirectory {
    ApplicationSupport, ///< the user's
    Library,            ///< the user's
    Preferences,        ///< the user's
    Caches,             ///< the user's
    State,              ///< the user's
    Applications,
    Home,
    Temporary,
};

/// Why a folder that is meant for a category is not cleaned.
enum class LeftOutReason {
    TopOfVolume,
    NotOwned, ///< by the user, or by root where the folder is the system's
    KeptPlace ///< it is, or holds, a folder that is kept: the home, or one with another purpose
};

struct LeftOutFolder {
    std::filesystem::path path;
    LeftOutReason reason = LeftOutReason::KeptPlace;
};

/// What was checked, as it was found then: scan and removal recognise the folders by what they are.
struct CleanFolders {
    std::vector<RemovalRoot> folders; ///< in order of use, each once
    std::vector<LeftOutFolder> leftOut;
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

    /// The folders of a category on this machine, those that exist. Nothing that is mounted on or
    /// below one is asked.
    virtual CleanFolders cleanFolders(CleanPlace place) = 0;
    /// The folders of the user's trashed items on a volume, by the rules of the freedesktop
    /// document: `$top/.Trash/$uid/files`, then `$top/.Trash-$uid/files`; those that are sound.
    virtual CleanFolders trashesOfVolume(const std::filesystem::path &top) = 0;

    /// The path on this machine of a system-wide path: below the prefix that
    /// BRIGHTSWEEP_SYSTEM_ROOT names, if any.
    virtual std::filesystem::path systemPath(const std::filesystem::path &path) = 0;
};

} // namespace brightsweep
