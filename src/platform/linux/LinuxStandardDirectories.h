#pragma once

#include "platform/StandardDirectories.h"

namespace brightsweep {

/// The XDG folders of the user and the system's own caches and logs.
///
/// Where a folder is fit to be cleaned is told by what it is, on descriptors: a user's folder is
/// the user's own and has no other purpose, a system's is a real directory of root's that is not
/// open to others, and neither is the top of a mount.
class LinuxStandardDirectories final : public StandardDirectories {
public:
    std::vector<std::filesystem::path> paths(StandardDirectory directory) override;
    CleanFolders cleanFolders(CleanPlace place) override;
    CleanFolders trashesOfVolume(const std::filesystem::path &top) override;
    std::filesystem::path systemPath(const std::filesystem::path &path) override;
};

} // namespace brightsweep
