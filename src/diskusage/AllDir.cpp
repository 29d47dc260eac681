#include "diskusage/AllDir.h"

#include "diskusage/AllDirChildren.h"
#include "diskusage/SizeScan.h"
#include "diskusage/W32AllDir.h"

#include <algorithm>
#include <ctime>
#include <limits>
#include <vector>

namespace brightsweep {

static_assert(std::atomic<std::int64_t>::is_always_lock_free);

std::atomic<bool> AllDir::bStopScan{false};
ChartView AllDir::view;

int compare(const void *first, const void *second) {
    const auto size = [](const void *slot) {
        return (*static_cast<AllDir *const *>(slot))->iSize.load(std::memory_order_relaxed);
    };
    return size(first) < size(second) ? 1 : -1;
}

void addSaturating(std::atomic<std::int64_t> &sum, std::uint64_t value) {
    constexpr std::uint64_t most = std::numeric_limits<std::int64_t>::max();
    std::int64_t before = sum.load(std::memory_order_relaxed);
    std::int64_t after;
    do {
        after = std::int64_t(value > most - std::uint64_t(before) ? most
                                                                  : std::uint64_t(before) + value);
    } while (!sum.compare_exchange_weak(before, after, std::memory_order_relaxed));
}

std::int64_t AllDir::ListAllDir(std::string_view path, bool isTop) {
    if (bStopScan.load(std::memory_order_relaxed) || pParent)
        return 0;
    m_name.store(arena().copy(path), std::memory_order_release);
    SizeScan(*this, isTop).run(path);
    return iSize.load(std::memory_order_relaxed);
}

void AllDir::abandonScan() {
    arena().isAbandoned = true;
}

void AllDir::FreeAll() {
    if (!pParent) {
        delete &arena(); // this node with it
        return;
    }
    for (std::atomic<AllDir *> &slot : pParent->ppChildren()) {
        if (slot.load(std::memory_order_relaxed) == this)
            slot.store(nullptr, std::memory_order_relaxed);
    }
}

void AllDir::replaceBy(AllDir &root) {
    arena().adopt(&root.arena());
    root.m_name.store(name(), std::memory_order_relaxed);
    root.pParent = pParent;
    root.m_depth = m_depth;
    root.m_upper = m_upper;
    pParent->subtract(std::uint64_t(iSize.load(std::memory_order_relaxed)), facts);
    pParent->add(std::uint64_t(root.iSize.load(std::memory_order_relaxed)), root.facts);
    for (std::atomic<AllDir *> &slot : pParent->ppChildren()) {
        if (slot.load(std::memory_order_relaxed) == this)
            slot.store(&root, std::memory_order_relaxed);
    }
}

void AllDir::subtract(std::uint64_t bytes, const ContentFacts &gone) {
    for (AllDir *above = this; above; above = above->pParent) {
        const auto size = std::uint64_t(above->iSize.load(std::memory_order_relaxed));
        above->iSize.store(bytes < size ? std::int64_t(size - bytes) : 0,
                           std::memory_order_relaxed);
        above->facts -= gone;
    }
}

void AllDir::add(std::uint64_t bytes, const ContentFacts &found) {
    for (AllDir *above = this; above; above = above->pParent) {
        addSaturating(above->iSize, bytes);
        above->facts += found;
    }
}

std::int64_t AllDir::shownSize() const {
    constexpr std::uint64_t most = std::numeric_limits<std::int64_t>::max();
    return view.measure == ChartMeasure::Stored ? std::int64_t(std::min(facts.stored, most))
                                                : iSize.load(std::memory_order_relaxed);
}

int AllDir::Find(std::string_view path, AllDir **out) const {
    const std::string own = szPath();
    if (!path.starts_with(own) || !path.ends_with('/') || path.size() == own.size())
        return -1;
    const std::string_view wanted = path.substr(own.size(), path.size() - own.size() - 1);
    for (const std::atomic<AllDir *> &slot : ppChildren()) {
        AllDir *const child = slot.load(std::memory_order_relaxed);
        if (child && child->name() == wanted) {
            *out = child;
            return 1;
        }
    }
    return -1;
}

void AllDir::setActivity() {
    tActivity = std::time(nullptr);
}

std::string AllDir::szPath() const {
    // A root may get its name at this very moment: each node is asked once.
    std::vector<std::string_view> names;
    std::size_t length = 0;
    for (const AllDir *node = this; node; node = node->pParent) {
        names.push_back(node->name());
        length += names.back().size() + (node->pParent ? 1 : 0);
    }
    if (names.front().empty())
        return {};
    std::string path;
    path.reserve(length);
    path += names.back();
    for (auto name = names.rbegin() + 1; name != names.rend(); ++name)
        path.append(*name) += '/';
    return path;
}

std::int64_t AllDir::iChildCount() const {
    const Children *children = m_children.load(std::memory_order_acquire);
    return children ? children->count : 0;
}

AllDir::Slots AllDir::ppChildren() const {
    Children *children = m_children.load(std::memory_order_acquire);
    return children ? Slots(children->slots(), std::size_t(children->count)) : Slots();
}

std::size_t AllDir::storage() const {
    return arena().bytesUsed();
}

NodeArena &AllDir::arena() const {
    const AllDir *node = this;
    while (node->pParent)
        node = static_cast<const AllDir *>(node->m_upper);
    return *static_cast<NodeArena *>(node->m_upper);
}

void AllDir::becomeRoot(NodeArena *arena) {
    m_upper = arena;
}

void AllDir::becomeChildOf(W32AllDir &parent) {
    const AllDir &upper = parent;
    pParent = &parent;
    if (upper.m_depth > lastGrowingDepth) {
        m_depth = upper.m_depth;
        m_upper = upper.m_upper;
        return;
    }
    m_depth = std::uint8_t(upper.m_depth + 1);
    m_upper = static_cast<AllDir *>(&parent);
    if (m_depth <= lastGrowingDepth && upper.m_depth > 0)
        m_upper = upper.m_upper;
}

} // namespace brightsweep
