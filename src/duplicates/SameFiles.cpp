#include "duplicates/SameFiles.h"

#include "foundation/Paths.h"

#include <optional>
#include <unordered_map>

namespace brightsweep {

std::vector<std::size_t> SameFiles::keptFor(const std::vector<const fileAttrbItem *> &items) {
    std::vector<std::size_t> kept(items.size(), 0);
    // An inode with one name only: every item is that file.
    if (items.empty() || hasOneName(*items.front()))
        return kept;
    // An item with something mounted on it is another name of a file that also stands elsewhere:
    // where that name was found too, it is the one that stays.
    std::unordered_map<std::string, std::size_t> names;
    std::vector<std::size_t> mounted;
    std::optional<std::size_t> firstName;
    for (std::size_t i = 0; i < items.size() && !m_stop; ++i) {
        if (m_files.isMountPoint(items[i]->filePathName)) {
            mounted.push_back(i);
            continue;
        }
        kept[i] = names.emplace(identity(*items[i]), i).first->second;
        firstName = firstName.value_or(i);
    }
    for (const std::size_t i : mounted)
        kept[i] = firstName.value_or(mounted.front());
    return kept;
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
