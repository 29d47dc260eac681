#include "duplicates/HardLinks.h"
#include "duplicates/DuplicateNodes.h"
#include "platform/FileIdentity.h"

#include <map>
#include <utility>

namespace brightsweep {

namespace {

FileIdentity identityOf(const TreeNode &leaf) {
    const SearchedFile &file = leafOf(leaf).searched();
    return {file.device, file.inode};
}

} // namespace

void countNames(const TreeNode &group) {
    const std::int32_t leaves = group.numberOfChildren();
    // Most groups are pairs.
    if (leaves == 2) {
        const auto first = group.childAtIndex(0);
        const auto second = group.childAtIndex(1);
        const std::uint32_t names = identityOf(*first) == identityOf(*second) ? 2 : 1;
        leafOf(*first).setNames(names);
        leafOf(*second).setNames(names);
        return;
    }
    std::map<FileIdentity, std::uint32_t> names;
    for (std::int32_t i = 0; i < leaves; ++i)
        ++names[identityOf(*group.childAtIndex(i))];
    for (std::int32_t i = 0; i < leaves; ++i) {
        const auto leaf = group.childAtIndex(i);
        leafOf(*leaf).setNames(names[identityOf(*leaf)]);
    }
}

} // namespace brightsweep
