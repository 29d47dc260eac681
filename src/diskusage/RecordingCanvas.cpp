#include "diskusage/RecordingCanvas.h"

#include "diskusage/AllDir.h"

#include <algorithm>

namespace brightsweep {

// A recording needs none, but a caller must be able to tell one from none.
class ChartCanvas::Quadric {};

namespace {

ChartCanvas::Quadric onlyQuadric;

} // namespace

void RecordingCanvas::beginSector(const AllDir &node) {
    Sector &sector = sectors.emplace_back();
    sector.node = &node;
    sector.level = node.iLevel;
}

ChartCanvas::Quadric *RecordingCanvas::newQuadric() {
    return outOfQuadrics ? nullptr : &onlyQuadric;
}

void RecordingCanvas::deleteQuadric(Quadric *) {}
void RecordingCanvas::quadricDrawStyle(Quadric *, DrawStyle style) {
    m_style = style;
}
void RecordingCanvas::quadricWithoutNormals(Quadric *) {}

void RecordingCanvas::partialDisk(Quadric *, double inner, double outer, int slices, int loops,
                                  double start, double sweep) {
    Sector &sector = sectors.back();
    if (m_style == DrawStyle::Silhouette) {
        sector.outline = m_color;
        return;
    }
    sector.start = start;
    sector.sweep = sweep;
    sector.inner = inner;
    sector.outer = outer;
    sector.slices = slices;
    sector.loops = loops;
    for (std::size_t i = 0; i < 3; ++i)
        sector.fill[i] = std::uint8_t(m_color[i]);
}

void RecordingCanvas::color3ub(std::uint8_t red, std::uint8_t green, std::uint8_t blue) {
    m_color = {double(red), double(green), double(blue)};
}

void RecordingCanvas::color3d(double red, double green, double blue) {
    const auto shown = [](double part) { return 255 * std::clamp(part, 0.0, 1.0); };
    m_color = {shown(red), shown(green), shown(blue)};
}

void RecordingCanvas::matrixMode(MatrixMode) {}
void RecordingCanvas::pushMatrix() {
    ++pushed;
}

void RecordingCanvas::popMatrix() {
    if (pushed > 0)
        --pushed;
    else
        ++failedPops;
}

void RecordingCanvas::loadIdentity() {}
void RecordingCanvas::translated(double, double, double) {}
void RecordingCanvas::ortho2D(double, double, double, double) {}
void RecordingCanvas::viewport(int, int, int, int) {}
void RecordingCanvas::clearColor(float, float, float, float) {}

void RecordingCanvas::clear() {
    sectors.clear();
    ++frames;
}

void RecordingCanvas::flush() {}

} // namespace brightsweep
