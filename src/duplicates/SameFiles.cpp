#include "duplicates/SameFiles.h"

#include "foundation/Paths.h"

namespace brightsweep {

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
