#include "diskusage/AllDir.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace brightsweep {

namespace {

constexpr int lastLevel = 5;
constexpr double narrowestSweep = 3.0;
constexpr double ringWidth = 0.7f; // as a single-precision number has it
constexpr double ringShrink = 1.1;
// After a removal, whose size is known by its words only, children may exceed their parent and
// reach beyond the full circle.
constexpr double farthestStart = 1e6;

struct Range {
    double inner;
    double outer;
};

Range computeRange(int level) {
    double sum = 0;
    for (int i = 1; i < level; ++i)
        sum += 1 / std::pow(ringShrink, i);
    const double inner = ringWidth * sum;
    return {inner, inner + ringWidth / std::pow(ringShrink, level)};
}

// The levels that are drawn come from a table, as every sector of every frame needs them.
Range rangeOf(int level) {
    static const auto table = [] {
        std::array<Range, lastLevel + 1> ranges;
        for (int i = 0; i <= lastLevel; ++i)
            ranges[std::size_t(i)] = computeRange(i);
        return ranges;
    }();
    return level >= 0 && level <= lastLevel ? table[std::size_t(level)] : computeRange(level);
}

bool liesOutside(const AllDir &node, double angle) {
    return angle < node.dStartAngle || angle > node.dStartAngle + node.dSweepAngle;
}

} // namespace

const std::int32_t palette[palettelen * 3] = {
    252, 123, 128, 251, 255, 122, 128, 255, 130, 0,   253, 129, 129, 255, 255, 0,   128,
    255, 245, 133, 191, 255, 128, 255, 255, 2,   0,   253, 255, 6,   129, 255, 0,   0,
    255, 60,  0,   255, 255, 0,   127, 194, 128, 128, 186, 255, 0,   255, 125, 64,  61,
    255, 128, 62,  0,   250, 0,   0,   130, 125, 0,   68,  124, 129, 126, 255, 131, 0,
    66,  255, 0,   128, 252, 127, 7,   2,   126, 4,   129, 0,   251, 66,  127, 130,
};

std::int32_t curcolor[3] = {0, 0, 0};

void AllDir::GetRangeFromStep(int step, double &inner, double &outer) {
    const Range range = rangeOf(step);
    inner = range.inner;
    outer = range.outer;
}

double AllDir::Paint(double sweep, double start, int level, std::int64_t parentSize,
                     bool selected) {
    if (level > lastLevel)
        return sweep;
    const std::int64_t size = shownSize();
    if (level != 1)
        sweep = double(size) * sweep / double(parentSize);
    dStartAngle = start;
    dSweepAngle = sweep;
    iLevel = level;
    // What is no width at all, from a parent without size, is narrow too.
    if (!(std::fabs(sweep) > narrowestSweep) || !std::isfinite(sweep)) {
        bHidden = true;
        return sweep;
    }
    const Range range = rangeOf(level);
    DrawSector(start, sweep, range.inner, range.outer, selected);
    double angle = start;
    for (const std::atomic<AllDir *> &slot : ppChildren()) {
        if (bStopScan.load(std::memory_order_relaxed))
            return sweep;
        if (AllDir *const child = slot.load(std::memory_order_relaxed))
            angle += child->Paint(sweep, angle, level + 1, size, selected);
    }
    return sweep;
}

double AllDir::Repaint(bool selected, const char *, const char *) {
    return Paint(dSweepAngle, dStartAngle, iLevel, shownSize(), selected);
}

// Depth first, by a list of its own: nodes that were never painted all cover the angle 0, and they
// may lie any number of levels deep.
int AllDir::Find(double radius, double angle, AllDir **out) {
    if (liesOutside(*this, angle))
        return -1;
    std::vector<AllDir *> waiting{this};
    while (!waiting.empty()) {
        AllDir *const node = waiting.back();
        waiting.pop_back();
        const Range range = rangeOf(node->iLevel);
        if (range.inner <= radius && radius <= range.outer) {
            *out = node;
            return 1;
        }
        const Slots slots = node->ppChildren();
        for (auto slot = slots.rbegin(); slot != slots.rend(); ++slot) {
            AllDir *const child = slot->load(std::memory_order_relaxed);
            if (child && !liesOutside(*child, angle))
                waiting.push_back(child);
        }
    }
    return -2;
}

void AllDir::GetColor(bool selected, int &r, int &g, int &b) const {
    int color[3] = {0, 0, 0};
    if (iLevel > 0) {
        color[0] = 39;
        color[1] = 41;
        color[2] = 51;
    }
    if (iLevel == 2) {
        const int degrees = int(std::clamp(dStartAngle, 0.0, farthestStart));
        const int index = int(palettelen * (degrees / 360.0)) % palettelen;
        for (int i = 0; i < 3; ++i) {
            color[i] = int(palette[index * 3 + i] * 0.9);
            curcolor[i] = std::int32_t(color[i] * 1.01);
        }
    } else if (iLevel >= 3) {
        for (int i = 0; i < 3; ++i)
            color[i] = curcolor[i];
    }
    if (selected) {
        color[0] = 46;
        color[1] = 87;
        color[2] = 199;
    }
    r = color[0];
    g = color[1];
    b = color[2];
}

} // namespace brightsweep
