#include "diskusage/ChartView.h"

#include "core/Texts.h"
#include "diskusage/AllDir.h"

namespace brightsweep {

namespace {

// By fileType.
constexpr std::array<ChartColour, ContentFacts::classes> kinds = {{
    {QT_TRID_NOOP("DUP_NO_CLASS"), {112, 116, 130}},
    {QT_TRID_NOOP("Documents"), {86, 156, 255}},
    {QT_TRID_NOOP("Music"), {255, 120, 190}},
    {QT_TRID_NOOP("Videos"), {255, 105, 80}},
    {QT_TRID_NOOP("Archives"), {214, 160, 60}},
    {QT_TRID_NOOP("Pictures"), {92, 200, 120}},
    {QT_TRID_NOOP("Others"), {160, 140, 220}},
}};

// The older, the cooler.
constexpr std::array<ChartColour, 5> ages = {{
    {QT_TRID_NOOP("USAGE_AGE_MONTH"), {255, 196, 60}},
    {QT_TRID_NOOP("USAGE_AGE_HALF_YEAR"), {226, 142, 78}},
    {QT_TRID_NOOP("USAGE_AGE_YEAR"), {176, 112, 140}},
    {QT_TRID_NOOP("USAGE_AGE_TWO_YEARS"), {112, 104, 180}},
    {QT_TRID_NOOP("USAGE_AGE_OLDER"), {74, 104, 168}},
}};
constexpr std::int64_t secondsOfDay = 24 * 60 * 60;
// How old each but the last may be.
constexpr std::array<std::int64_t, ages.size() - 1> mostDays = {30, 182, 365, 730};

} // namespace

std::span<const ChartColour> chartColours(ChartColouring colouring) {
    switch (colouring) {
    case ChartColouring::Kind:
        return kinds;
    case ChartColouring::Age:
        return ages;
    case ChartColouring::Place:
        break;
    }
    return {};
}

std::size_t chartColourOf(const AllDir &directory, ChartColouring colouring, std::int64_t now) {
    if (colouring == ChartColouring::Kind)
        return std::size_t(directory.facts.largestClass());
    std::size_t age = 0;
    while (age < mostDays.size() &&
           now - std::int64_t(directory.facts.changed) > mostDays[age] * secondsOfDay)
        ++age;
    return age;
}

} // namespace brightsweep
