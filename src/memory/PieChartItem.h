#pragma once

#include <QString>

#include <cstdint>

namespace brightsweep {

/// Of 255, and opaque.
struct PieColor {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;
    bool operator==(const PieColor &) const = default;
};

/// A slice of a pie chart.
struct PieChartItem {
    QString itemName;
    PieColor itemColor;
    float itemValue = 0;

    static PieChartItem itemWithName(const QString &name, PieColor color, float value) {
        return {name, color, value};
    }
};

} // namespace brightsweep
