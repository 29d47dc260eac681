#pragma once

#include "platform/FileOperations.h"

#include <atomic>
#include <memory>
#include <string>
#include <system_error>
#include <unordered_map>

namespace brightsweep {

/// Moves items to the user's trash by the freedesktop Trash document: to the home trash, or to the
/// trash of the item's own volume. An item is renamed, never copied, and its `.trashinfo` is there
/// before it comes, so that a process that is killed leaves nothing in the trash without a record.
///
/// For one thread of a run. Rights are never used for it: what the user may not move stays.
class MoveToTrash {
public:
    /// `stop`, when given, outlives this object.
    explicit MoveToTrash(const std::atomic<bool> *stop = nullptr) : m_stop(stop) {}

    /// Empty where the item can be moved, as far as can be told without moving it.
    std::error_code check(const OpenItem &item);
    /// An item that is refused stays where it is, and leaves no record.
    std::error_code move(const OpenItem &item);

private:
    const Result<TrashFolder> &trashOf(const OpenItem &item, bool make);
    std::error_code moveAs(const OpenItem &item, const TrashFolder &trash, const std::string &name);
    void noteSize(const TrashFolder &trash, const std::string &name);

    const std::atomic<bool> *m_stop;
    std::shared_ptr<const HoldingFolder> m_folder; ///< whose trash m_trash is
    bool m_made = false;                           ///< what was missing of that trash has been made
    Result<TrashFolder> m_trash = std::errc::no_such_file_or_directory;
    std::unordered_map<std::string, unsigned> m_taken; ///< the last number given to a name
};

} // namespace brightsweep
