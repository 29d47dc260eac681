#pragma once

#include "duplicates/fileAttrbItem.h"
#include "platform/FileOperations.h"

#include <string>
#include <unordered_set>

namespace brightsweep {

/// Tells the names of one inode apart: real hard links are files of their own, while a name that
/// is met again by way of a link, a second mount of its directory, or a mount on the file itself is
/// the same file met twice. Belongs to one thread.
class SameFiles {
public:
    explicit SameFiles(FileOperations &files) : m_files(files) {}

    /// Calls `drop` with each of the items that is the same file as one that stays. The items have
    /// the same device and inode, and stand in the order in which they were found.
    template <typename Drop>
    void dropRepeated(const std::vector<const fileAttrbItem *> &items, Drop drop) {
        // An item with something mounted on it is another name of a file that also stands
        // elsewhere: where that name was found too, it is the one that stays.
        std::unordered_set<std::string> names;
        // An inode with one name only: every item is that file.
        const bool isAlone = !items.empty() && hasOneName(*items.front());
        std::vector<const fileAttrbItem *> mounted;
        std::size_t kept = 0;
        for (const fileAttrbItem *item : items) {
            if (kept > 0 && isAlone) {
                drop(*item);
                continue;
            }
            if (!isAlone && m_files.isMountPoint(item->filePathName))
                mounted.push_back(item);
            else if (names.insert(identity(*item)).second)
                ++kept;
            else
                drop(*item);
        }
        for (std::size_t i = kept > 0 ? 0 : 1; i < mounted.size(); ++i)
            drop(*mounted[i]);
    }

private:
    bool hasOneName(const fileAttrbItem &item);
    std::string identity(const fileAttrbItem &item);

    FileOperations &m_files;
    std::string m_parent; // the directory asked for last
    std::string m_parentIdentity;
};

} // namespace brightsweep
