#pragma once

#include "foundation/Result.h"
#include "platform/FileIdentity.h"
#include "platform/FileOperations.h"

#include <atomic>
#include <cstdint>
#include <map>
#include <utility>

namespace brightsweep {

/// What lies below a folder, apart from what is mounted there.
struct FolderFacts {
    std::uint64_t entries = 0;
    std::int64_t newest = 0;     ///< when entries last came to it or to a folder in it, or went
    std::int64_t newestFile = 0; ///< when anything that is no folder last changed in it
    std::uint64_t bytes = 0;
    /// Entries below the list's size limit, and what they come to.
    std::uint64_t smallEntries = 0;
    std::uint64_t smallBytes = 0;
};

/// An item to remove as it was when the user ticked it, by what it is and not by its name.
struct UsageItem {
    RemovalTarget target;
    FileAttributes seen;
    FolderFacts below; ///< of a folder

    bool isFolder() const { return seen.type == EntryType::Directory; }
    /// Another object has the name now, or the file was written to.
    bool isReplacedBy(const UsageItem &later) const;
    /// A folder that has more in it now, or something else.
    bool hasGainedBy(const UsageItem &later) const;
};

/// Adds up what the removal of items gives back to their file systems: of a file with several names
/// only once all of them go. Snapshots may hold it all the same.
class FreedBytes {
public:
    void add(std::uint64_t device, std::uint64_t inode, std::uint64_t links, std::uint64_t stored);
    void add(const FreedBytes &other);
    std::uint64_t sum() const { return m_sum; }
    /// Stored bytes that stay, for the sake of names that are not among the items.
    std::uint64_t kept() const;

private:
    struct Names {
        std::uint64_t links = 0;
        std::uint64_t stored = 0;
        std::uint64_t seen = 0;
    };
    using File = FileIdentity;

    void add(const File &file, const Names &names);

    std::map<File, Names> m_names; // of those that have further names
    std::uint64_t m_sum = 0;
};

/// How an item is looked at; the pointers may be null.
struct UsageLook {
    std::uint64_t limit = 0; ///< entries smaller than that count as small
    const std::atomic<bool> *stop = nullptr;
    FreedBytes *freed = nullptr;
};

/// Looks at an item that has been reached at that target, a folder with all below it, on the
/// calling thread and helpers that live for the call only. An error where a stop cut it short.
Result<UsageItem> lookAtItem(const RemovalTarget &target, const OpenItem &item,
                             const UsageLook &look);

} // namespace brightsweep
