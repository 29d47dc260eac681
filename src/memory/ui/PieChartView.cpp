#include "memory/ui/PieChartView.h"

#include "core/Texts.h"
#include "ui/Theme.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <utility>

namespace brightsweep {

namespace {

// The view is drawn in these measures, whatever size it has on the screen.
constexpr double frameWidth = 300;
constexpr double frameHeight = 250;
constexpr double inset = 5;

constexpr double fullCircle = 360;
// The half of the rim that faces the reader, clockwise from the top.
constexpr double rimStart = 90;
constexpr double rimEnd = 270;

QColor colorOf(const PieChartItem &item) {
    return {item.itemColor.red, item.itemColor.green, item.itemColor.blue};
}

// Qt counts angles from the right and against the clock.
double qtAngle(double clockwiseFromTop) {
    return 90 - clockwiseFromTop;
}

} // namespace

PieChartView::PieChartView(QWidget *parent)
    : QWidget(parent), _chartRadius(frameWidth / 2 - inset) {
    setObjectName(QStringLiteral("chartView"));
    setAccessibleName(localizedText("MEMORY_CHART"));
    theme::keepSize(this, int(frameWidth), int(frameHeight));
    _chartCenter = {frameWidth / 2, (frameHeight - _spaceHeight) / 2};
}

void PieChartView::setPieChartItems(std::vector<PieChartItem> items) {
    m_pieChartItems = std::move(items);
    update();
}

float PieChartView::total() const {
    float sum = 0;
    for (const PieChartItem &item : m_pieChartItems)
        sum += item.itemValue;
    return sum;
}

std::vector<PieChartView::Slice> PieChartView::slices() const {
    std::vector<Slice> slices;
    const double whole = double(total());
    if (whole <= 0)
        return slices;
    double start = 0;
    for (const PieChartItem &item : m_pieChartItems) {
        const double sweep = double(item.itemValue) / whole * fullCircle;
        slices.push_back({item, start, sweep});
        start += sweep;
    }
    return slices;
}

QRectF PieChartView::disc() const {
    const double height = _chartRadius * _scaleY;
    return {_chartCenter.x() - _chartRadius, _chartCenter.y() - height, 2 * _chartRadius,
            2 * height};
}

void PieChartView::drawSpaceHeight(QPainter &painter) const {
    const QRectF upper = disc();
    const QRectF lower = upper.translated(0, _spaceHeight);
    painter.setPen(Qt::NoPen);
    for (const Slice &slice : slices()) {
        const double start = std::max(slice.start, rimStart);
        const double sweep = std::min(slice.start + slice.sweep, rimEnd) - start;
        if (sweep <= 0)
            continue;
        QPainterPath band;
        band.arcMoveTo(upper, qtAngle(start));
        band.arcTo(upper, qtAngle(start), -sweep);
        band.arcTo(lower, qtAngle(start + sweep), sweep);
        band.closeSubpath();
        painter.fillPath(band, colorOf(slice.item));
        QColor shade = QColor::fromRgbF(0.1F, 0.1F, 0.1F, 0.4F);
        painter.fillPath(band, shade);
    }
}

void PieChartView::drawCircle(QPainter &painter) const {
    painter.setPen(QPen(QColor::fromRgbF(0.9F, 0.9F, 0.9F), 1));
    for (const Slice &slice : slices()) {
        QPainterPath path(_chartCenter);
        path.arcTo(disc(), qtAngle(slice.start), -slice.sweep);
        path.closeSubpath();
        painter.setBrush(colorOf(slice.item));
        painter.drawPath(path);
    }
}

void PieChartView::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(width() / frameWidth, height() / frameHeight);
    drawSpaceHeight(painter);
    drawCircle(painter);
}

} // namespace brightsweep
