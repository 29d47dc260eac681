#pragma once

#include "memory/PieChartItem.h"

#include <QPointF>
#include <QRectF>
#include <QWidget>

#include <vector>

namespace brightsweep {

/// A pie chart as a disc that is tilted and has a rim. The slices run clockwise from the top, in
/// the order of the items. Main thread.
class PieChartView : public QWidget {
    Q_OBJECT

public:
    explicit PieChartView(QWidget *parent = nullptr);

    void setPieChartItems(std::vector<PieChartItem> items);
    const std::vector<PieChartItem> &pieChartItems() const { return m_pieChartItems; }
    /// The sum of all values.
    float total() const;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    /// Where a slice begins and how far it goes, in degrees clockwise from the top.
    struct Slice {
        const PieChartItem &item;
        double start;
        double sweep;
    };
    std::vector<Slice> slices() const;
    void drawCircle(QPainter &painter) const;
    void drawSpaceHeight(QPainter &painter) const;
    QRectF disc() const;

    std::vector<PieChartItem> m_pieChartItems;
    QPointF _chartCenter;
    double _chartRadius = 0;
    double _scaleY = 0.4;       ///< the tilt
    double _spaceHeight = 40.0; ///< the depth of the rim
};

} // namespace brightsweep
