#pragma once

#include "duplicates/fileAttrbItem.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace brightsweep {

/// One application bundle as a whole.
class AppAttrbItem {
public:
    FileList AllFileInDirectory;     ///< everything in it but directories
    std::uint64_t DirectorySize = 0; ///< sum of the members' sizes
    std::string DirectoryPathName;
    std::string DirectoryName; ///< its last component
    /// Which directory it is, by whatever path it was reached.
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    /// False once a member could not be read: then the bundle is nobody's duplicate.
    bool isReadable = true;
    /// True once a file of it turned out to be one of another bundle's of its group, found before.
    bool isRepeated = false;
};

using AppList = std::vector<std::shared_ptr<AppAttrbItem>>;

} // namespace brightsweep
