#include "diskusage/ui/ChartPicture.h"

#include "core/RowWords.h"
#include "core/Texts.h"
#include "diskusage/AllDir.h"
#include "diskusage/ChartLabels.h"
#include "diskusage/RingChart.h"
#include "diskusage/ui/ChartCanvasChoice.h"
#include "diskusage/ui/OffscreenGl.h"
#include "diskusage/ui/PainterCanvas.h"
#include "foundation/Paths.h"
#include "ui/ElidedText.h"
#include "ui/Theme.h"

#include <QFontInfo>
#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>
#include <iterator>

namespace brightsweep {

namespace {

constexpr double labelSize = 10.5;
constexpr double smallestSize = 8; // in the centre
constexpr int narrowestLabelled = 16;
constexpr int centreLevel = 1;
constexpr double tickWidth = 2.5;
constexpr double chartReach = 3; // from the centre to the nearest edge

// Lays out what another canvas draws.
class SectorsOnly final : public PlaneCanvas {
public:
    explicit SectorsOnly(QSize size) : PlaneCanvas(size) {}

protected:
    void drawOutline(const Area &, Colour) override {}
    void fillArea(const Area &, Colour) override {}
    void clearDevice(Colour, std::uint8_t) override {}
};

} // namespace

ChartPicture::ChartPicture(QSize size, double ratio) : m_size(size), m_ratio(ratio) {}

QSize ChartPicture::pixels() const {
    return (QSizeF(m_size) * m_ratio).toSize();
}

// By OpenGL where that is in use; then the sectors are laid out once more without being drawn.
QImage ChartPicture::paintChart(RingChart &chart) {
    const QSize all = pixels();
    const auto draw = [&](QSize size) { chart.drawChart(size.width(), size.height()); };
    const double narrowest = theme::height(narrowestLabelled) * m_ratio;
    QImage image;
    if (OffscreenGl *const gl = ChartCanvasChoice::shared().gl())
        image = gl->paint(all, m_ratio, draw);
    if (!image.isNull()) {
        SectorsOnly canvas(all);
        canvas.keepSectors(narrowest);
        const ChartCanvas::Use use(canvas);
        draw(all);
        m_sectors = canvas.sectors();
    }
    const bool isDrawn = !image.isNull();
    if (!isDrawn) {
        image = QImage(all, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
    }
    QPainter painter(&image);
    if (!isDrawn) {
        PainterCanvas canvas(painter, all, m_ratio);
        canvas.keepSectors(narrowest);
        const ChartCanvas::Use use(canvas);
        draw(all);
        m_sectors = canvas.sectors();
    }
    paintLabels(painter, m_sectors);
    painter.end();
    image.setDevicePixelRatio(m_ratio);
    return image;
}

void ChartPicture::paintFound(RingChart &chart, QPainter &painter) {
    painter.save();
    painter.scale(1 / m_ratio, 1 / m_ratio);
    PainterCanvas canvas(painter, pixels(), m_ratio);
    canvas.keepSectors(theme::height(narrowestLabelled) * m_ratio);
    {
        const ChartCanvas::Use use(canvas);
        chart.drawFound(pixels().width(), pixels().height());
    }
    paintLabels(painter, canvas.sectors());
    painter.restore();
}

// In the screen's pixels, as the sectors are.
void ChartPicture::paintLabels(QPainter &painter,
                               const std::vector<PlaneCanvas::Sector> &sectors) const {
    std::vector<PlaneCanvas::Sector> rings;
    std::copy_if(sectors.begin(), sectors.end(), std::back_inserter(rings),
                 [](const auto &sector) { return sector.level != centreLevel; });
    QFont font = theme::font(labelSize);
    font.setPixelSize(int(std::lround(QFontInfo(font).pixelSize() * m_ratio)));
    const QFontMetricsF metrics(font);
    painter.setFont(font);
    const double line = metrics.height();
    const auto width = [&metrics](const QString &text) { return metrics.horizontalAdvance(text); };
    for (const ChartLabel &label : layOutLabels(rings, {width, line, 3 * m_ratio})) {
        painter.setPen(label.isDark ? Qt::black : Qt::white);
        const double lines = label.size.isEmpty() ? 1 : 2;
        const double half = std::max(width(label.name), width(label.size)) / 2 + 1;
        const QRectF box(label.centre.x() - half, label.centre.y() - lines * line / 2, 2 * half,
                         line);
        painter.drawText(box, Qt::AlignCenter | Qt::TextSingleLine, label.name);
        if (!label.size.isEmpty())
            painter.drawText(box.translated(0, line), Qt::AlignCenter | Qt::TextSingleLine,
                             label.size);
    }
}

void ChartPicture::paintTicks(QPainter &painter, const std::vector<PlaneCanvas::Sector> &sectors,
                              const std::function<bool(const std::string &)> &isTicked) const {
    painter.save();
    painter.scale(1 / m_ratio, 1 / m_ratio);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(theme::accent(), tickWidth * m_ratio));
    for (const PlaneCanvas::Sector &sector : sectors) {
        if (sector.level == centreLevel || !isTicked(sector.path))
            continue;
        const auto circle = [&](double radius) {
            return QRectF(sector.centre.x() - radius, sector.centre.y() - radius, 2 * radius,
                          2 * radius);
        };
        // Painter paths count angles the other way, from the right.
        const double inset = tickWidth * m_ratio / 2;
        QPainterPath path;
        path.arcMoveTo(circle(sector.outer - inset), 90 - sector.start);
        path.arcTo(circle(sector.outer - inset), 90 - sector.start, -sector.sweep);
        path.arcTo(circle(sector.inner + inset), 90 - sector.start - sector.sweep, sector.sweep);
        path.closeSubpath();
        painter.drawPath(path);
    }
    painter.restore();
}

QRectF ChartPicture::centreDisc(QSize size) {
    double inner = 0;
    double outer = 0;
    AllDir::GetRangeFromStep(centreLevel, inner, outer);
    const double radius = std::min(size.width(), size.height()) / 2.0 * outer / chartReach;
    return {size.width() / 2.0 - radius, size.height() / 2.0 - radius, 2 * radius, 2 * radius};
}

void ChartPicture::paintCentre(QPainter &painter, const QRectF &disc, const QString &name,
                               const QString &size, const QString &share) {
    const struct {
        const QString &text;
        double size;
        bool bold;
        QColor colour;
    } lines[] = {{name, 13, true, theme::text()},
                 {size, 15, true, theme::accent()},
                 {share, 10.5, false, theme::secondary()}};
    double height = 0;
    for (const auto &line : lines)
        height += line.text.isEmpty() ? 0 : QFontMetricsF(theme::font(line.size)).height();
    const double radius = disc.width() / 2;
    double top = disc.center().y() - height / 2;
    for (const auto &line : lines) {
        if (line.text.isEmpty())
            continue;
        const double lineHeight = QFontMetricsF(theme::font(line.size)).height();
        // As wide as the disc is at the line's farther edge.
        const double away = std::max(std::abs(top - disc.center().y()),
                                     std::abs(top + lineHeight - disc.center().y()));
        const double room = 2 * (std::sqrt(std::max(0.0, radius * radius - away * away)) - 3);
        QString text = line.text;
        QFont font = theme::font(line.size, line.bold);
        // Words that find no room are left out: the number before them says it as well.
        if (&line.text == &share && QFontMetricsF(font).horizontalAdvance(text) > room)
            text = text.section(QChar::Nbsp, 0, 0);
        // Fonts come in steps, so that one of the right proportion may still be too wide.
        for (double points = line.size;
             points > smallestSize && QFontMetricsF(font).horizontalAdvance(text) > room;) {
            points = std::max(smallestSize, points - 0.5);
            font = theme::font(points, line.bold);
        }
        painter.setFont(font);
        painter.setPen(line.colour);
        if (room > 0)
            painter.drawText(QRectF(disc.center().x() - room / 2, top, room, lineHeight),
                             Qt::AlignCenter | Qt::TextSingleLine,
                             elidedText(QFontMetrics(font), text, Qt::ElideMiddle, int(room)));
        top += lineHeight;
    }
}

QImage ChartPicture::whole(RingChart &chart, QSize size, double ratio, const QString &share) {
    ChartPicture picture(size, ratio);
    const QImage rings = picture.paintChart(chart);
    QImage image(rings.size(), QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    image.fill(theme::window());
    QPainter painter(&image);
    painter.drawImage(QPoint(), rings);
    const RingChart::Facts facts = chart.currentFacts();
    paintCentre(painter, centreDisc(size), paths::display(paths::lastComponent(facts.path)),
                sizeWords(facts.bytes), share);
    return image;
}

} // namespace brightsweep
