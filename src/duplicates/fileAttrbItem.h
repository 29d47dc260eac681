#pragma once

#include "foundation/FileTime.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace brightsweep {

/// One candidate file. There may be millions of them: nothing is kept here that the path tells.
///
/// The fields called md5 hold CRC-64 values; 0 means not computed yet. Made by the walk, completed
/// by the thread that reads the file, and constant once a search has ended.
class fileAttrbItem {
public:
    /// What stands behind the path, as the walk found it.
    enum class Kind : std::uint8_t {
        File,
        Link,    ///< to something that is no directory; fileSize is the link's own
        Special, ///< never opened
    };

    std::string filePathName;
    std::uint64_t fileSize = 0;
    std::uint64_t md5 = 0;
    std::uint64_t md5_1k = 0;
    FileTime ModificationDate;
    std::int64_t changed = 0; ///< contents, mode, names or owner; nanoseconds since the epoch
    /// Of a link, those of what it leads to.
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::uint64_t stored = 0; ///< bytes that it takes in its file system; of a link its own
    std::uint32_t links = 1;  ///< names of the file; of a link its own
    Kind kind = Kind::File;

    /// The last component of the path.
    std::string_view fileName() const {
        return std::string_view(filePathName).substr(filePathName.rfind('/') + 1);
    }

    /// True when both are there and have the same checksum of the whole file.
    static bool isEqual(const fileAttrbItem *item, const fileAttrbItem *otherObject) {
        return item && otherObject && item->md5 != 0 && item->md5 == otherObject->md5;
    }
};

using FileList = std::vector<std::shared_ptr<fileAttrbItem>>;

} // namespace brightsweep
