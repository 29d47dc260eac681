#include "diskusage/NodeTreeOperator.h"

#include "core/SettingKeys.h"
#include "core/SizeLimit.h"
#include "foundation/Paths.h"
#include "foundation/SaturatingSum.h"
#include "platform/DirectoryWalk.h"
#include "platform/Platform.h"

#include <algorithm>
#include <limits>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

namespace brightsweep {

namespace {

void removeSmallFolders(FSNode &node, std::size_t first, std::uint64_t limit) {
    const auto begin = node.children.begin() + std::ptrdiff_t(first);
    node.children.erase(std::remove_if(begin, node.children.end(),
                                       [&](const auto &child) {
                                           return child->_isDirectory && child->size < limit;
                                       }),
                        node.children.end());
}

// Everything below the node is there: the folders count, and those below the limit go.
void complete(FSNode &node, std::size_t first, std::uint64_t limit) {
    for (std::size_t i = first; i < node.children.size(); ++i) {
        if (node.children[i]->_isDirectory)
            node.size = addSaturating(node.size, node.children[i]->size);
    }
    removeSmallFolders(node, first, limit);
    node.isComplete = true;
}

// Fills one node. A directory's node is touched by the thread that reads the directory, and again
// once everything below it is complete; no lock is needed.
class ListWalk final : public DirectoryWalk::Visitor {
public:
    ListWalk(FSNode &root, std::uint64_t limit, TaskStopper &stopper, std::shared_mutex &tree,
             UnreadFolders &unread)
        : m_root(root),
          m_limit(limit),
          m_tree(tree),
          m_unread(unread),
          m_walk(*Platform::current().files, *this,
                 {WantedAttributes::NonDirectories, 0, &stopper.flag()}) {}

    std::uint64_t run(OpenDirectory directory) {
        const std::uint64_t before = m_root.size;
        const std::size_t childrenBefore = m_root.children.size();
        m_root.size = 0;
        m_firstOwnChild = childrenBefore;
        m_walk.addRoot(std::make_shared<const OpenDirectory>(std::move(directory)), &m_root);
        m_walk.run();
        return std::exchange(m_root.size, before);
    }

    // The size of a node is meanwhile that of its own files.
    void entries(DirectoryWalk::Directory &directory, const DirectoryBlock &block) override {
        const std::shared_lock lock(m_tree);
        FSNode &node = *static_cast<FSNode *>(directory.context());
        for (const DirectoryEntry &entry : block.entries()) {
            if (entry.type == EntryType::Directory) {
                FSNode &child = node.addChild(entry.nameView(), true, 0);
                m_walk.enter(directory, entry.nameView(), &child);
                continue;
            }
            node.size = addSaturating(node.size, entry.size);
            if (entry.size >= m_limit)
                node.addChild(entry.nameView(), false, entry.size);
        }
    }

    void read(DirectoryWalk::Directory &directory, std::error_code error) override {
        if (!error)
            return;
        const std::lock_guard lock(m_unreadMutex);
        m_unread.add([&] { return static_cast<FSNode *>(directory.context())->_path().native(); });
    }

    void left(DirectoryWalk::Directory &directory) override {
        const std::shared_lock lock(m_tree);
        FSNode &node = *static_cast<FSNode *>(directory.context());
        complete(node, &node == &m_root ? m_firstOwnChild : 0, m_limit);
        node.children.shrink_to_fit();
    }

private:
    FSNode &m_root;
    const std::uint64_t m_limit;
    std::shared_mutex &m_tree;
    std::mutex m_unreadMutex;
    UnreadFolders &m_unread;
    DirectoryWalk m_walk;
    std::size_t m_firstOwnChild = 0;
};

} // namespace

std::uint64_t NodeTreeOperator::getFistListTree(const std::filesystem::path &path, FSNode &root,
                                                std::uint64_t limit) {
    if (m_stopper.getStopFlags())
        return 0;
    FileOperations &files = *Platform::current().files;
    const auto attributes = files.attributes(path);
    if (!attributes)
        return 0;
    if (attributes->type != EntryType::Directory) {
        if (attributes->size < limit)
            return 0;
        root.addChild(paths::lastComponent(path), false, attributes->size);
        return attributes->size;
    }
    auto directory = files.openDirectory(path);
    if (!directory) {
        noteUnread(path);
        return 0;
    }
    return ListWalk(root, limit, m_stopper, m_tree, m_unread).run(std::move(*directory));
}

void NodeTreeOperator::noteUnread(const std::filesystem::path &folder) {
    m_unread.add([&] { return folder.native(); });
}

std::uint64_t NodeTreeOperator::giveUp(FSNode &root, std::uint64_t limit) {
    m_tree.lock(); // and never unlocked
    struct Level {
        FSNode *node;
        std::size_t next;
    };
    std::vector<Level> levels;
    if (!root.isComplete)
        levels.push_back({&root, 0});
    while (!levels.empty()) {
        auto &[node, next] = levels.back();
        if (next < node->children.size()) {
            FSNode &child = *node->children[next++];
            if (child._isDirectory && !child.isComplete)
                levels.push_back({&child, 0});
            continue;
        }
        complete(*node, 0, limit);
        levels.pop_back();
    }
    return root.size;
}

std::uint64_t getLimitSize() {
    return storedLimitInBytes(DSDiskUsageLimit, DSDiskUsageUnit);
}

} // namespace brightsweep
