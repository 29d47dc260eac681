#pragma once

#include "diskusage/PlaneCanvas.h"

#include <QFont>
#include <QImage>
#include <QSize>

#include <functional>
#include <string>
#include <vector>

class QPainter;

namespace brightsweep {

class RingChart;

/// Paints the ring chart with its labels, for the page and for saved pictures. Main thread; while a
/// scan runs, too.
class ChartPicture {
public:
    /// Sizes in the widget's pixels, of which each takes `ratio` of the screen's.
    ChartPicture(QSize size, double ratio);

    /// The chart of the current directory on a transparent ground.
    QImage paintChart(RingChart &chart);
    /// A frame around each of the sectors for which `isTicked` says so, of those that the last
    /// paintChart() painted wide enough to be seen.
    void paintTicks(QPainter &painter, const std::vector<PlaneCanvas::Sector> &sectors,
                    const std::function<bool(const std::string &path)> &isTicked) const;
    /// What paintChart() painted, in the screen's pixels.
    const std::vector<PlaneCanvas::Sector> &sectors() const { return m_sectors; }
    /// What the mouse has found, over a picture of the same size; nothing where nothing is found.
    void paintFound(RingChart &chart, QPainter &painter);
    /// The same chart with its centre's words on the window's ground, to be saved.
    static QImage whole(RingChart &chart, QSize size, double ratio, const QString &share);

    /// The name, the size and one more line in the disc in the middle; of that line only what
    /// stands before a no-break space where it finds no room.
    static void paintCentre(QPainter &painter, const QRectF &disc, const QString &name,
                            const QString &size, const QString &share);
    /// The disc of the centre in a picture of that size.
    static QRectF centreDisc(QSize size);

private:
    void paintLabels(QPainter &painter, const std::vector<PlaneCanvas::Sector> &sectors) const;
    QSize pixels() const;

    QSize m_size;
    double m_ratio;
    std::vector<PlaneCanvas::Sector> m_sectors;
};

} // namespace brightsweep
