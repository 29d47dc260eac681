#include "diskusage/SizeScan.h"

#include "diskusage/AllDirChildren.h"
#include "diskusage/W32AllDir.h"
#include "foundation/NotificationCenter.h"
#include "foundation/SaturatingSum.h"
#include "platform/Platform.h"
#include "results/FileClasses.h"

#include <algorithm>
#include <limits>
#include <ratio>
#include <vector>

namespace brightsweep {

namespace {

constexpr std::string_view leftOutAtTheTop = "Volumes";

// The children of the directory that this thread is reading: one thread reads a directory from its
// first block to its last.
thread_local std::vector<AllDir *> childrenFound;

// "." and ".." do not count, and with them no name that ends in a point.
bool counts(const DirectoryEntry &entry) {
    return entry.name[entry.nameLength - 1] != '.';
}

// Behind the last point, if that is neither the first character nor the last one.
std::size_t classOf(const DirectoryEntry &entry) {
    const std::string_view name = entry.nameView();
    const std::size_t point = name.rfind('.');
    if (point == name.npos || point == 0)
        return 0;
    return std::size_t(fileTypeOfExtension(name.substr(point + 1)));
}

// Times before 1970 and beyond 2106 are at the ends.
std::uint32_t secondsOf(std::int64_t nanoseconds) {
    constexpr std::int64_t most = std::numeric_limits<std::uint32_t>::max();
    return std::uint32_t(std::clamp<std::int64_t>(nanoseconds / std::nano::den, 0, most));
}

AllDir &nodeOf(DirectoryWalk::Directory &directory) {
    return *static_cast<AllDir *>(directory.context());
}

} // namespace

SizeScan::SizeScan(AllDir &root, bool isTop)
    : m_root(root),
      m_isTop(isTop),
      m_arena(root.arena()),
      m_walk(*Platform::current().files, *this,
             {WantedAttributes::NonDirectories, 0, &AllDir::bStopScan, &m_arena.isAbandoned}) {}

void SizeScan::run(std::string_view path) {
    auto directory = Platform::current().files->openDirectory(std::filesystem::path(path));
    m_root.isUnread = !directory;
    if (directory) {
        m_walk.addRoot(std::make_shared<const OpenDirectory>(std::move(*directory)), &m_root);
        m_walk.run();
    }
    m_rootRead = true;
    between();
    childrenFound.clear();
    childrenFound.shrink_to_fit();
}

void SizeScan::entries(DirectoryWalk::Directory &directory, const DirectoryBlock &block) {
    AllDir &node = nodeOf(directory);
    const bool atTop = m_isTop && &node == &m_root;
    std::uint64_t bytes = 0;
    ContentFacts &facts = node.facts;
    for (const DirectoryEntry &entry : block.entries()) {
        if (!counts(entry))
            continue;
        if (entry.type != EntryType::Directory) {
            bytes = addSaturating(bytes, entry.size);
            facts.stored = addSaturating(facts.stored, entry.stored);
            facts.changed = std::max(facts.changed, secondsOf(entry.modified));
            facts.byClass[classOf(entry)] += float(entry.size);
        } else if (!atTop || entry.nameView() != leftOutAtTheTop) {
            AllDir *const child = node.newAllDir();
            child->m_name.store(m_arena.copy(entry.nameView()), std::memory_order_relaxed);
            childrenFound.push_back(child);
            m_walk.enter(directory, entry.nameView(), child);
        }
    }
    if (bytes != 0)
        add(node, bytes);
}

void SizeScan::read(DirectoryWalk::Directory &directory, std::error_code error) {
    AllDir &node = nodeOf(directory);
    node.isUnread = bool(error);
    if (!childrenFound.empty()) {
        node.m_children.store(AllDir::Children::make(m_arena, childrenFound),
                              std::memory_order_release);
        childrenFound.clear();
    }
    if (&node == &m_root)
        m_rootRead.store(true, std::memory_order_release);
}

void SizeScan::left(DirectoryWalk::Directory &directory) {
    AllDir &node = nodeOf(directory);
    // A parent whose size grows at once has this node's bytes already.
    AllDir *const parent = node.pParent;
    if (&node != &m_root && parent->m_depth > AllDir::lastGrowingDepth)
        addSaturating(parent->iSize, std::uint64_t(node.iSize.load(std::memory_order_relaxed)));
    // All below is complete: each directory adds its children's once.
    for (const std::atomic<AllDir *> &slot : node.ppChildren())
        node.facts += slot.load(std::memory_order_relaxed)->facts;
    if (node.iSortChildren == 1)
        sort(node);
    if (parent == &m_root && &node != &m_root)
        m_topFinished.fetch_add(1, std::memory_order_relaxed);
}

void SizeScan::between() {
    if (!m_isTop || !m_rootRead.load(std::memory_order_acquire))
        return;
    NotificationCenter &center = NotificationCenter::defaultCenter();
    if (!m_levelsPosted) {
        m_levelsPosted = true;
        center.post(QStringLiteral("GetDirTotalLevel"), nullptr,
                    {{QStringLiteral("DirLevels"), qlonglong(m_root.iChildCount())}});
    }
    for (; m_progressPosted < m_topFinished.load(std::memory_order_relaxed); ++m_progressPosted)
        center.post(QStringLiteral("NeedUpdateProgress"));
}

// The outermost first: a painter that meets a sum half-way sees no child larger than its parent.
void SizeScan::add(AllDir &node, std::uint64_t bytes) {
    AllDir *nearest = &node;
    if (node.m_depth > AllDir::lastGrowingDepth)
        nearest = static_cast<AllDir *>(node.m_upper);
    AllDir *growing[AllDir::lastGrowingDepth + 1];
    std::size_t count = 0;
    for (; nearest; nearest = nearest->pParent)
        growing[count++] = nearest;
    while (count > 0)
        addSaturating(growing[--count]->iSize, bytes);
    if (node.m_depth > AllDir::lastGrowingDepth)
        addSaturating(node.iSize, bytes);
}

void SizeScan::sort(AllDir &node) {
    const AllDir::Slots slots = node.ppChildren();
    const auto before = [](AllDir *first, AllDir *second) { return compare(&second, &first) > 0; };
    if (std::is_sorted(slots.begin(), slots.end(), before))
        return;
    std::vector<AllDir *> nodes(slots.begin(), slots.end());
    std::stable_sort(nodes.begin(), nodes.end(), before);
    node.m_children.store(AllDir::Children::make(m_arena, nodes), std::memory_order_release);
}

} // namespace brightsweep
