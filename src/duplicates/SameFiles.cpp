#include "duplicates/SameFiles.h"

#include "foundation/Paths.h"

#include <unordered_set>

namespace brightsweep {

std::vector<std::size_t> SameFiles::repeated(const std::vector<const fileAttrbItem *> &items) {
    // An item with something mounted on it is another name of a file that also stands elsewhere:
    // where that name was found too, it is the one that stays.
    std::unordered_set<std::string> names;
    std::vector<std::size_t> mounted;
    std::vector<std::size_t> gone;
    // An inode with one name only: every item is that file.
    const bool isAlone = !items.empty() && hasOneName(*items.front());
    for (std::size_t i = 0; i < items.size() && !m_stop; ++i) {
        if (isAlone && i > 0)
            gone.push_back(i);
        else if (!isAlone && m_files.isMountPoint(items[i]->filePathName))
            mounted.push_back(i);
        else if (!names.insert(identity(*items[i])).second)
            gone.push_back(i);
    }
    gone.insert(gone.end(), mounted.begin() + (names.empty() && !mounted.empty() ? 1 : 0),
                mounted.end());
    return gone;
}

bool SameFiles::hasOneName(const fileAttrbItem &item) {
    const auto attributes = m_files.attributesFollowing(item.filePathName);
    return attributes && attributes->links == 1;
}

// The directory by what it is, and the name in it.
std::string SameFiles::identity(const fileAttrbItem &item) {
    std::filesystem::path path = item.filePathName;
    if (item.kind == fileAttrbItem::Kind::Link) {
        if (auto canonical = m_files.canonicalPath(path))
            path = std::move(*canonical);
    }
    const std::string parent = paths::parent(path).native();
    if (parent != m_parent || m_parentIdentity.empty()) {
        const auto directory = m_files.attributesFollowing(parent);
        m_parent = parent;
        m_parentIdentity = directory ? std::to_string(directory->device) + ":" +
                                           std::to_string(directory->inode) + "/"
                                     : parent + "/";
    }
    return m_parentIdentity + paths::lastComponent(path);
}

} // namespace brightsweep
