#pragma once

#include "duplicates/fileAttrbItem.h"
#include "platform/FileOperations.h"

#include <atomic>
#include <string>
#include <vector>

namespace brightsweep {

/// Tells the names of one inode apart: real hard links are files of their own, while a name that
/// is met again by way of a link, a second mount of its directory, or a mount on the file itself is
/// the same file met twice. Belongs to one thread.
class SameFiles {
public:
    /// Once `stop` is set, what is asked for ends at once and is worth nothing.
    SameFiles(FileOperations &files, const std::atomic<bool> &stop)
        : m_files(files), m_stop(stop) {}

    /// For each item the place of the one that stands for the same file: its own, or that of the
    /// one that stays in its place. The items have the same device and inode, and stand in the
    /// order in which they were found.
    std::vector<std::size_t> keptFor(const std::vector<const fileAttrbItem *> &items);

private:
    bool hasOneName(const fileAttrbItem &item);
    std::string identity(const fileAttrbItem &item);

    FileOperations &m_files;
    const std::atomic<bool> &m_stop;
    std::string m_parent; // the directory asked for last
    std::string m_parentIdentity;
};

} // namespace brightsweep
