#include "diskusage/ui/PainterCanvas.h"

#include <QPainter>
#include <QPainterPath>

namespace brightsweep {

namespace {

QColor colourOf(PlaneCanvas::Colour colour, int alpha = 255) {
    return {colour[0], colour[1], colour[2], alpha};
}

} // namespace

PainterCanvas::PainterCanvas(QPainter &painter, QSize pixels, double lineWidth)
    : PlaneCanvas(pixels), m_painter(painter), m_lineWidth(lineWidth) {
    m_painter.setRenderHint(QPainter::Antialiasing);
}

void PainterCanvas::drawArea(const Area &area) {
    if (area.hole.empty()) {
        m_painter.drawPolygon(area.outer.data(), int(area.outer.size()));
        return;
    }
    QPainterPath path;
    path.setFillRule(Qt::OddEvenFill);
    path.addPolygon(QList<QPointF>(area.outer.begin(), area.outer.end()));
    path.closeSubpath();
    path.addPolygon(QList<QPointF>(area.hole.begin(), area.hole.end()));
    path.closeSubpath();
    m_painter.drawPath(path);
}

void PainterCanvas::drawOutline(const Area &area, Colour colour) {
    m_painter.setPen(QPen(colourOf(colour), m_lineWidth));
    m_painter.setBrush(Qt::NoBrush);
    drawArea(area);
}

void PainterCanvas::fillArea(const Area &area, Colour colour) {
    m_painter.setPen(Qt::NoPen);
    m_painter.setBrush(colourOf(colour));
    drawArea(area);
}

void PainterCanvas::clearDevice(Colour colour, std::uint8_t alpha) {
    m_painter.setCompositionMode(QPainter::CompositionMode_Source);
    m_painter.fillRect(QRectF(QPointF(), size()), colourOf(colour, alpha));
    m_painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
}

} // namespace brightsweep
