// The ring chart for views that keep what they drew, for places in it, and for the keyboard.
#include "diskusage/ChartCanvas.h"
#include "diskusage/RingChart.h"
#include "foundation/Log.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

namespace brightsweep {

namespace {

constexpr int centreLevel = 1;
constexpr int lastLevel = 5;

// What a view shows of a directory, in painting order.
std::vector<W32AllDir *> drawnChildren(const AllDir &node) {
    std::vector<W32AllDir *> children;
    for (const std::atomic<AllDir *> &slot : node.ppChildren()) {
        AllDir *const child = slot.load(std::memory_order_relaxed);
        if (child && !child->bHidden && child->iLevel == node.iLevel + 1)
            children.push_back(static_cast<W32AllDir *>(child));
    }
    return children;
}

// All of one ring, from the top on.
void addRing(const AllDir &node, int level, std::vector<W32AllDir *> &ring) {
    for (W32AllDir *const child : drawnChildren(node)) {
        if (child->iLevel == level)
            ring.push_back(child);
        else
            addRing(*child, level, ring);
    }
}

} // namespace

// -- Drawing in two parts

void RingChart::drawChart(int width, int height) {
    drawParts(width, height, &RingChart::drawBase);
}

void RingChart::drawFound(int width, int height) {
    drawParts(width, height, &RingChart::drawOver);
}

void RingChart::drawParts(int width, int height, void (RingChart::*draw)()) {
    ChartCanvas *const canvas = ChartCanvas::current();
    if (!canvas || width <= 0 || height <= 0)
        return;
    setProjection(width, height);
    const std::lock_guard lock(m_mutex);
    (this->*draw)();
    canvas->flush();
}

void RingChart::drawBase() {
    prepareViewLocked();
    if (icCurrentPtr)
        icCurrentPtr->Paint(360.0, 0.0, centreLevel, 0, false);
}

// The colours of the rings beyond the first go by the one below them, as painted last.
void RingChart::drawOver() {
    prepareViewLocked();
    if (icFoundPtr && icCurrentPtr && !icFoundPtr->bHidden)
        icFoundPtr->Repaint(true, "", "");
}

// -- Facts

RingChart::Facts RingChart::foundFacts() const {
    const std::lock_guard lock(m_mutex);
    return icFoundPtr && !icFoundPtr->bHidden ? factsLocked(icFoundPtr) : Facts{};
}

RingChart::Facts RingChart::currentFacts() const {
    const std::lock_guard lock(m_mutex);
    return factsLocked(icCurrentPtr);
}

RingChart::Facts RingChart::rootFacts() const {
    const std::lock_guard lock(m_mutex);
    return factsLocked(icAllDir);
}

std::optional<RingChart::Facts> RingChart::factsOf(std::string_view path) const {
    const std::lock_guard lock(m_mutex);
    const AllDir *const node = searchFileLocked(path);
    return node ? std::optional(factsLocked(node)) : std::nullopt;
}

// The place's y grows downwards, and with it the angle is 0 at the top and grows clockwise.
RingChart::Polar RingChart::polar(QPointF place) {
    const double turn = std::atan2(place.x(), place.y()) + std::numbers::pi;
    return {std::hypot(place.x(), place.y()), 360 + 360 * turn / (-2 * std::numbers::pi)};
}

RingChart::Facts RingChart::gapAt(QPointF place) const {
    const auto [radius, angle] = polar(place);
    const std::lock_guard lock(m_mutex);
    const W32AllDir *node = icCurrentPtr;
    for (int level = centreLevel + 1; node && level <= lastLevel; ++level) {
        double inner = 0;
        double outer = 0;
        AllDir::GetRangeFromStep(level, inner, outer);
        if (radius < inner)
            return {};
        const W32AllDir *within = nullptr;
        Facts facts = factsLocked(node);
        for (const W32AllDir *const child : drawnChildren(*node)) {
            facts.bytes -= std::min(facts.bytes, shownSizeLocked(*child));
            if (child->dStartAngle <= angle && angle <= child->dStartAngle + child->dSweepAngle)
                within = child;
        }
        if (radius <= outer)
            return within ? Facts{} : facts;
        node = within;
    }
    return {};
}

UnreadFolders RingChart::unreadDirectories() const {
    const std::lock_guard lock(m_mutex);
    return m_unread;
}

// -- The keyboard

void RingChart::findChild(std::string_view path) {
    {
        const std::lock_guard lock(m_mutex);
        AllDir *found = nullptr;
        if (icCurrentPtr && !path.empty() && icCurrentPtr->Find(path, &found) > 0 && found->bHidden)
            found = nullptr;
        if (icFoundPtr == found)
            return;
        icFoundPtr = static_cast<W32AllDir *>(found);
    }
    Q_EMIT redrawNeeded();
}

void RingChart::step(Step step) {
    {
        const std::lock_guard lock(m_mutex);
        if (!icCurrentPtr)
            return;
        W32AllDir *const from = icFoundPtr && !icFoundPtr->bHidden ? icFoundPtr : nullptr;
        if (!from || from == icCurrentPtr) {
            const auto children = drawnChildren(*icCurrentPtr);
            if (!children.empty())
                icFoundPtr = step == Step::Previous ? children.back() : children.front();
        } else if (step == Step::Inwards) {
            icFoundPtr = from->pParent == icCurrentPtr ? nullptr : from->pParent;
        } else if (step == Step::Outwards) {
            const auto children = drawnChildren(*from);
            if (!children.empty())
                icFoundPtr = children.front();
        } else {
            std::vector<W32AllDir *> ring;
            addRing(*icCurrentPtr, from->iLevel, ring);
            const auto at = std::find(ring.begin(), ring.end(), from);
            if (at == ring.end())
                return;
            const std::size_t index = std::size_t(at - ring.begin());
            const std::size_t onward = step == Step::Next ? 1 : ring.size() - 1;
            icFoundPtr = ring[(index + onward) % ring.size()];
        }
    }
    Q_EMIT redrawNeeded();
}

void RingChart::enterFound() {
    W32AllDir *node = nullptr;
    {
        const std::lock_guard lock(m_mutex);
        node = icFoundPtr && !icFoundPtr->bHidden ? icFoundPtr : nullptr;
    }
    if (node && node != current())
        goTo(*node);
}

void RingChart::goUp() {
    W32AllDir *node = nullptr;
    {
        const std::lock_guard lock(m_mutex);
        node = icCurrentPtr ? icCurrentPtr->pParent : nullptr;
    }
    if (node)
        goTo(*node);
}

void RingChart::goTo(W32AllDir &node) {
    Facts facts;
    {
        const std::lock_guard lock(m_mutex);
        icCurrentPtr = &node;
        icFoundPtr = nullptr;
        clearHiddenFlagsLocked();
        facts = factsLocked(icCurrentPtr);
    }
    NSLog("Current Directory: %@", facts.path);
    list(facts.path, facts.size);
    Q_EMIT redrawNeeded();
}

void RingChart::list(const std::filesystem::path &path, std::uint64_t size) {
    if (m_listing)
        m_listing(path, size);
    else
        updateLeftView(path, size);
}

} // namespace brightsweep
