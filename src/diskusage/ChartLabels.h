#pragma once

#include "diskusage/PlaneCanvas.h"

#include <QRectF>
#include <QString>

#include <functional>
#include <vector>

namespace brightsweep {

/// What stands on one sector of the chart: up to two lines, centred on a point.
struct ChartLabel {
    QPointF centre;
    QString name;        ///< to be shown, elided where it has to be
    QString size;        ///< empty where there is room for the name only
    bool isDark = false; ///< on a light colour
};

/// How labels are measured; lengths in the device's units.
struct LabelMeasure {
    std::function<double(const QString &)> width;
    double lineHeight = 0;
    double margin = 0; ///< kept free on all sides
};

/// Labels for the sectors that have room, each within its own sector, so that none meets another.
/// The centre has one at most as wide as its disc.
std::vector<ChartLabel> layOutLabels(const std::vector<PlaneCanvas::Sector> &sectors,
                                     const LabelMeasure &measure);

} // namespace brightsweep
