#pragma once

#include "platform/FileOperations.h"
#include "platform/MountsBelow.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace brightsweep {

/// An entry of a folder whose size is wanted.
struct SizedItem {
    std::string name;
    EntryType type = EntryType::Unknown;
    std::uint64_t size = 0; ///< bytes; filled in by sizeItems() for a directory
    std::optional<std::int64_t> modified = std::nullopt; ///< nanoseconds since the epoch
    bool holdsVolume = false; ///< it, or something below it, is a mount point; that counts nothing
};

/// Sizes the items of an open folder, several directories at once, and hands each over on the
/// calling thread in the order of the list, as soon as it and all before it are known. An item that
/// a stop cut short is not handed over, and none behind it: what was handed over is a prefix.
/// Returns false when the stop flag (which may be null) ended it.
bool sizeItems(std::shared_ptr<const OpenDirectory> folder, const MountsBelow &mounts,
               std::vector<SizedItem> &items, const std::atomic<bool> *stop,
               const std::function<void(const SizedItem &)> &ready);

/// Everything below an open directory but what is mounted there; nothing when a stop cut it short.
std::optional<std::uint64_t> sizeOfOpenDirectory(OpenDirectory directory,
                                                 const std::atomic<bool> *stop);

/// One removable item that has been reached. 0 for what cannot be read or has gone, nothing when a
/// stop cut it short.
std::optional<std::uint64_t> sizeOfTarget(const OpenItem &item, const std::atomic<bool> *stop);

/// What an entry that is not a directory adds; 0 while the TaskStopper's flag is set.
std::uint64_t sizeOfOneFile(const FileAttributes &attributes);

} // namespace brightsweep
