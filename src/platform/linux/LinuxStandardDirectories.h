#pragma once

#include "platform/StandardDirectories.h"

namespace brightsweep {

/// The XDG folders of the user and the system's own caches and logs.
///
/// A clean folder is left out, with a line in the log, when it equals or contains the home, "/" or
/// one of the XDG config, data and state folders, or is itself the top of a mount: whoever points
/// a user directory at such a place has switched it off. Folders of the system count only while
/// they are real directories, owned by root and not open to others.
class LinuxStandardDirectories final : public StandardDirectories {
public:
    std::vector<std::filesystem::path> paths(StandardDirectory directory) override;
    std::vector<std::filesystem::path> trashesOfVolume(const std::filesystem::path &top) override;
    std::filesystem::path systemPath(const std::filesystem::path &path) override;
};

} // namespace brightsweep
