#pragma once

#include <array>
#include <cstdint>
#include <span>

namespace brightsweep {

class AllDir;

/// What the sizes of a chart are: those of the files, or what they take in their file system.
enum class ChartMeasure { Size, Stored };

constexpr std::uint64_t bytesBy(ChartMeasure measure, std::uint64_t size, std::uint64_t stored) {
    return measure == ChartMeasure::Stored ? stored : size;
}

/// What the colours of a chart's rings tell: the place in the chart, the class of files that holds
/// most of a directory's bytes, or how long ago anything in it changed.
enum class ChartColouring { Place, Kind, Age };

/// How a chart is looked at. The tree is the same.
struct ChartView {
    ChartMeasure measure = ChartMeasure::Size;
    ChartColouring colouring = ChartColouring::Place;

    bool operator==(const ChartView &) const = default;
};

/// One colour of a chart and what it stands for.
struct ChartColour {
    const char *word; ///< the key of its text
    std::array<std::uint8_t, 3> rgb;
};

/// The legend of a colouring; empty for that by place.
std::span<const ChartColour> chartColours(ChartColouring colouring);
/// Which of them a directory has; `now` in seconds since the epoch.
std::size_t chartColourOf(const AllDir &directory, ChartColouring colouring, std::int64_t now);

} // namespace brightsweep
