// How the ring chart is looked at, and which directories it holds beyond what a scan found.
#include "diskusage/RingChart.h"
#include "foundation/Log.h"
#include "foundation/PathBytes.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace brightsweep {

namespace {

bool isSameOrAncestor(const AllDir *ancestor, const AllDir *node) {
    while (node && node != ancestor)
        node = node->pParent;
    return node != nullptr;
}

} // namespace

void RingChart::setView(const ChartView &view) {
    {
        const std::lock_guard lock(m_mutex);
        if (view == m_view)
            return;
        m_view = view;
        clearHiddenFlagsLocked();
    }
    Q_EMIT redrawNeeded();
}

// What a scan has not come to the end of is known by its size alone.
void RingChart::prepareViewLocked() const {
    AllDir::view = m_scanning ? ChartView{} : m_view;
}

std::uint64_t RingChart::shownSizeLocked(const AllDir &node) const {
    prepareViewLocked();
    return std::uint64_t(node.shownSize());
}

// Only sizes are read while a scan fills the tree.
std::uint64_t RingChart::storedLocked(const AllDir &node) const {
    return m_scanning ? 0 : node.facts.stored;
}

RingChart::Facts RingChart::factsLocked(const AllDir *node) const {
    if (!node)
        return {};
    return {node->szPath(), shownSizeLocked(*node), node->iLevel,
            std::uint64_t(node->iSize.load(std::memory_order_relaxed)), storedLocked(*node)};
}

// Before a node goes out of the tree.
void RingChart::leaveLocked(const AllDir &node) {
    if (icFoundPtr && isSameOrAncestor(&node, icFoundPtr))
        icFoundPtr = nullptr;
    if (isSameOrAncestor(&node, icCurrentPtr))
        icCurrentPtr = node.pParent;
}

bool RingChart::isInTreeLocked(const AllDir &node) const {
    const AllDir *each = &node;
    while (each->pParent) {
        const AllDir::Slots slots = each->pParent->ppChildren();
        if (std::none_of(slots.begin(), slots.end(), [&](const std::atomic<AllDir *> &slot) {
                return slot.load(std::memory_order_relaxed) == each;
            }))
            return false;
        each = each->pParent;
    }
    return each == icAllDir;
}

// -- Scanned anew

void RingChart::replaceFolder(std::string_view path, W32AllDir *scanned) {
    {
        const std::lock_guard lock(m_mutex);
        AllDir *const node = m_scanning ? nullptr : searchFileLocked(path);
        if (!node || !node->pParent) {
            scanned->FreeAll();
            return;
        }
        const std::string shown = icCurrentPtr->szPath();
        leaveLocked(*node);
        node->replaceBy(*scanned);
        if (AllDir *const still = searchFileLocked(shown))
            icCurrentPtr = static_cast<W32AllDir *>(still);
        else if (shown.starts_with(path))
            icCurrentPtr = scanned;
        std::erase_if(m_leftOut, [&](const LeftOut &each) {
            return each.path.starts_with(path) && each.path != path;
        });
        m_unread = unreadIn(*icAllDir);
        clearHiddenFlagsLocked();
    }
    NSLog("Scanned again: %@", std::string(path));
    Q_EMIT redrawNeeded();
}

UnreadFolders RingChart::unreadIn(const AllDir &root) {
    UnreadFolders unread;
    std::vector<const AllDir *> waiting{&root};
    while (!waiting.empty()) {
        const AllDir *const node = waiting.back();
        waiting.pop_back();
        if (node->isUnread)
            unread.add([&] { return std::string(paths::withoutTrailingSlashes(node->szPath())); });
        for (const std::atomic<AllDir *> &slot : node->ppChildren()) {
            if (const AllDir *const child = slot.load(std::memory_order_relaxed))
                waiting.push_back(child);
        }
    }
    return unread;
}

// -- Left out

bool RingChart::leaveOut(std::string_view path) {
    {
        const std::lock_guard lock(m_mutex);
        AllDir *const node = m_scanning ? nullptr : searchFileLocked(path);
        if (!node || !node->pParent)
            return false;
        leaveLocked(*node);
        for (std::atomic<AllDir *> &slot : node->pParent->ppChildren()) {
            if (slot.load(std::memory_order_relaxed) != node)
                continue;
            slot.store(nullptr, std::memory_order_relaxed);
            m_leftOut.push_back({node, &slot, std::string(path)});
        }
        node->pParent->subtract(std::uint64_t(node->iSize.load(std::memory_order_relaxed)),
                                node->facts);
        clearHiddenFlagsLocked();
    }
    Q_EMIT redrawNeeded();
    return true;
}

void RingChart::showLeftOut() {
    {
        const std::lock_guard lock(m_mutex);
        for (const LeftOut &each : std::exchange(m_leftOut, {})) {
            // The directory above may have gone meanwhile.
            if (!isInTreeLocked(*each.node->pParent))
                continue;
            each.slot->store(each.node, std::memory_order_relaxed);
            each.node->pParent->add(std::uint64_t(each.node->iSize.load(std::memory_order_relaxed)),
                                    each.node->facts);
        }
        clearHiddenFlagsLocked();
    }
    Q_EMIT redrawNeeded();
}

bool RingChart::isLeftOut(std::string_view path) const {
    const std::lock_guard lock(m_mutex);
    return std::any_of(m_leftOut.begin(), m_leftOut.end(),
                       [&](const LeftOut &each) { return each.path == path; });
}

bool RingChart::holdsLeftOut(std::string_view path) const {
    const std::lock_guard lock(m_mutex);
    return std::any_of(m_leftOut.begin(), m_leftOut.end(), [&](const LeftOut &each) {
        return each.path != path && each.path.starts_with(path);
    });
}

std::size_t RingChart::leftOut() const {
    const std::lock_guard lock(m_mutex);
    return m_leftOut.size();
}

} // namespace brightsweep
