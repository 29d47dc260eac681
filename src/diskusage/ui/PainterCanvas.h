#pragma once

#include "diskusage/PlaneCanvas.h"

class QPainter;

namespace brightsweep {

/// Draws the chart with a QPainter, smoothly, in its device's pixels: for windows without OpenGL
/// and for pictures. The painter outlives the canvas and is left with other pens and brushes.
class PainterCanvas final : public PlaneCanvas {
public:
    /// The size in pixels; outlines are `lineWidth` of them wide.
    PainterCanvas(QPainter &painter, QSize pixels, double lineWidth);

protected:
    void drawOutline(const Area &area, Colour colour) override;
    void fillArea(const Area &area, Colour colour) override;
    void clearDevice(Colour colour, std::uint8_t alpha) override;

private:
    void drawArea(const Area &area);

    QPainter &m_painter;
    double m_lineWidth;
};

} // namespace brightsweep
