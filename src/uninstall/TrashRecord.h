#pragma once

#include "platform/FileOperations.h"

#include <optional>
#include <string>
#include <string_view>

namespace brightsweep {

/// What a trash remembers of one of its items besides the item: `info/NAME.trashinfo`, and for a
/// directory a line of `directorysizes`. Taken before the item is removed and forgotten after.
///
/// It holds the trash open, so that a folder swapped meanwhile is not touched, and follows no link.
/// Any thread; two records of one trash may be forgotten at once.
class TrashRecord {
public:
    /// Nothing for an item that does not lie directly in the `files` folder of a trash: a directory
    /// "Trash" or ".Trash-UID", or "UID" below ".Trash", that has a folder `info` too.
    static std::optional<TrashRecord> of(FileOperations &files, const RemovalTarget &target);

    /// True when the item's `.trashinfo` is gone afterwards. It tries both parts whatever happens.
    bool forget() const;
    /// The `.trashinfo`, to be removed by other means.
    Result<RemovalTarget> trashInfo() const;

private:
    TrashRecord() = default;
    std::error_code forgetSize() const;

    FileDescriptor m_trash;
    FileDescriptor m_info;
    std::filesystem::path m_infoPath;
    std::string m_name;
};

/// The text of a `directorysizes` file without the lines for that name. A line is a size, a time
/// and the percent-encoded name.
std::string withoutDirectorySize(std::string_view text, std::string_view name);

} // namespace brightsweep
