#include "duplicates/FreedBytes.h"

#include "duplicates/DuplicateNodes.h"
#include "platform/FileIdentity.h"
#include "platform/FileOperations.h"
#include "platform/Platform.h"

#include <algorithm>
#include <map>
#include <utility>

namespace brightsweep {

namespace {

// The names that go, of files that have more than one.
class Names {
public:
    /// True when nothing is left of the file after this one.
    bool isLast(const DuplicateLeaf &leaf) {
        const SearchedFile &file = leaf.searched();
        if (file.links < 2)
            return true;
        Count &count = m_counts[{file.device, file.inode}];
        count.links = file.links;
        return ++count.going == file.links;
    }
    /// Files of which a name stays.
    bool hasStaying() const {
        return std::any_of(m_counts.begin(), m_counts.end(),
                           [](const auto &file) { return file.second.going < file.second.links; });
    }

private:
    struct Count {
        std::uint32_t going = 0;
        std::uint32_t links = 0;
    };
    std::map<FileIdentity, Count> m_counts;
};

// A link to a file holds none of its blocks.
bool holdsBlocks(const DuplicateLeaf &leaf) {
    return leaf.searched().kind != SearchedFile::Kind::Link;
}

} // namespace

std::uint64_t wastedBy(const TreeNode &group) {
    std::uint64_t sum = 0;
    std::uint64_t most = 0;
    bool sharesBlocks = false;
    Names names;
    for (std::int32_t i = 0; i < group.numberOfChildren(); ++i) {
        const DuplicateLeaf &leaf = leafOf(*group.childAtIndex(i));
        if (!holdsBlocks(leaf) || !names.isLast(leaf))
            continue;
        sharesBlocks = sharesBlocks || leaf.sharesBlocks();
        sum += leaf.freed();
        most = std::max(most, leaf.freed());
    }
    // The one to keep is one whose blocks would stay anyway, where there is one.
    return sharesBlocks || names.hasStaying() ? sum : sum - most;
}

std::uint64_t freedBy(const TreeNode::List &leaves) {
    std::uint64_t freed = 0;
    Names names;
    for (const auto &node : leaves) {
        const DuplicateLeaf &leaf = leafOf(*node);
        if (holdsBlocks(leaf) && names.isLast(leaf))
            freed += leaf.freed();
    }
    return freed;
}

std::vector<std::uint64_t> lookForSharedBlocks(const TreeNode::List &leaves,
                                               const std::atomic<bool> &stop) {
    FileOperations &files = *Platform::current().files;
    std::vector<std::uint64_t> freed;
    bool isAsked = false;
    for (const auto &node : leaves) {
        if (stop)
            return {};
        const DuplicateLeaf &leaf = leafOf(*node);
        freed.push_back(leaf.searched().stored);
        const auto file = leaf.searched().kind == SearchedFile::Kind::File
                              ? files.openFile(leaf.name())
                              : Result<FileDescriptor>(std::errc::is_a_directory);
        if (!file)
            continue;
        if (!std::exchange(isAsked, true) && files.sharingRefusal(*file))
            return {};
        freed.back() = std::min(freed.back(), files.unsharedBytes(*file).value_or(freed.back()));
    }
    return freed;
}

} // namespace brightsweep
