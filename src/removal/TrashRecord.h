#pragma once

#include "platform/FileIdentity.h"
#include "platform/FileOperations.h"

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>

namespace brightsweep {

/// What a trash remembers of its items besides the items: `info/NAME.trashinfo`, and for a
/// directory a line of `directorysizes`. Taken before an item is removed and forgotten after.
///
/// It holds the trash open, so that a folder swapped meanwhile is not touched, and follows no link.
/// Any thread; two records of one trash may be forgotten at once.
class TrashRecord {
public:
    /// Nothing for a folder that is not the `files` folder of a trash with a folder `info` too. A
    /// trash is what the root says, or what is called "Trash", ".Trash-UID", or "UID" below
    /// ".Trash".
    static std::optional<TrashRecord> of(const HoldingFolder &folder, const RemovalTarget &target);

    /// True when the item's `.trashinfo` is gone afterwards. It tries both parts whatever happens.
    bool forget(const std::string &name) const;
    /// The `.trashinfo`, to be removed by other means.
    Result<RemovalTarget> trashInfo(const std::string &name) const;

private:
    TrashRecord() = default;

    FileDescriptor m_trash;
    FileDescriptor m_info;
    std::filesystem::path m_infoPath;
};

/// Has a trash's `directorysizes` tell how many bytes a directory in it takes, as its `.trashinfo`
/// of that time says it came. Errors are of no weight: the file saves a computation.
void noteDirectorySize(const FileDescriptor &trash, const std::string &name, std::uint64_t bytes,
                       std::int64_t seconds);

/// While one lives, what its thread moves to or removes from trashes is gathered, and each
/// `directorysizes` file is rewritten once at the end, or after some thousands of them. Made and
/// destroyed on one thread, the last made first. The file only saves others a computation: lines of
/// what has gone do no harm meanwhile, nor when the process ends before.
class [[nodiscard]] TrashBatch {
public:
    TrashBatch();
    ~TrashBatch();
    TrashBatch(const TrashBatch &) = delete;
    TrashBatch &operator=(const TrashBatch &) = delete;

private:
    friend void noteLine(const FileDescriptor &, const std::string &, const std::string &);
    struct Trash {
        FileDescriptor folder;
        std::map<std::string, std::string> lines; ///< by name; empty for one that only goes
    };
    void add(const FileDescriptor &trash, const std::string &name, const std::string &line);
    static void write(Trash &trash);

    std::map<FileIdentity, Trash> m_trashes;
    TrashBatch *const m_outer;
};

} // namespace brightsweep
