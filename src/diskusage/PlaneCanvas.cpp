#include "diskusage/PlaneCanvas.h"

#include "diskusage/AllDir.h"
#include "foundation/Paths.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace brightsweep {

// The style of the only one is the canvas's own.
class ChartCanvas::Quadric {};

namespace {

ChartCanvas::Quadric onlyQuadric;

constexpr double fullCircle = 360;

double radians(double degrees) {
    return degrees * std::numbers::pi / 180;
}

std::uint8_t byteOf(double part) {
    return std::uint8_t(std::lround(255 * std::clamp(part, 0.0, 1.0)));
}

} // namespace

PlaneCanvas::PlaneCanvas(QSizeF size)
    : m_size(size),
      m_viewport{0, 0, size.width(), size.height()},
      m_stacks{std::vector<Matrix>(1), std::vector<Matrix>(1)} {}

PlaneCanvas::~PlaneCanvas() = default;

void PlaneCanvas::beginDirectory(const AllDir &) {}

void PlaneCanvas::beginSector(const AllDir &node) {
    m_node = &node;
    beginDirectory(node);
}

// -- Disks

ChartCanvas::Quadric *PlaneCanvas::newQuadric() {
    m_style = DrawStyle::Fill;
    return &onlyQuadric;
}

void PlaneCanvas::deleteQuadric(Quadric *) {
    m_node = nullptr;
}

void PlaneCanvas::quadricDrawStyle(Quadric *, DrawStyle style) {
    m_style = style;
}

void PlaneCanvas::quadricWithoutNormals(Quadric *) {}

// As gluPartialDisk() has it: chords between the slices, no side lines on a full circle, nothing at
// all for values out of range. Loops divide what one colour fills, and change no pixel.
void PlaneCanvas::partialDisk(Quadric *, double inner, double outer, int slices, int loops,
                              double start, double sweep) {
    if (slices < 2 || loops < 1 || !(outer > 0) || inner < 0 || inner > outer ||
        !std::isfinite(start) || !std::isfinite(sweep) || isClipped())
        return;
    sweep = std::clamp(sweep, -fullCircle, fullCircle);
    if (sweep < 0) {
        start += sweep;
        sweep = -sweep;
    }
    m_points.clear();
    Area area;
    const bool isWhole = sweep == fullCircle;
    addArc(outer, slices, start, sweep, false);
    const std::size_t ofOuter = m_points.size();
    if (inner > 0)
        addArc(inner, slices, start, sweep, !isWhole);
    else if (!isWhole)
        m_points.push_back(onDevice(0, 0));
    area.outer = m_points;
    if (isWhole) {
        area.outer = std::span(m_points).first(ofOuter);
        area.hole = std::span(m_points).subspan(ofOuter);
    }
    if (m_style == DrawStyle::Silhouette) {
        drawOutline(area, m_color);
        return;
    }
    fillArea(area, m_color);
    keep(inner, outer, start, sweep);
}

void PlaneCanvas::addArc(double radius, int slices, double start, double sweep, bool backwards) {
    const int points = sweep == fullCircle ? slices : slices + 1;
    for (int i = 0; i < points; ++i) {
        const int slice = backwards ? points - 1 - i : i;
        const double angle = radians(start + sweep * slice / slices);
        m_points.push_back(onDevice(radius * std::sin(angle), radius * std::cos(angle)));
    }
}

void PlaneCanvas::keep(double inner, double outer, double start, double sweep) {
    if (m_narrowestKept < 0 || !m_node)
        return;
    const QPointF centre = onDevice(0, 0);
    const double unit = std::abs(onDevice(1, 0).x() - centre.x());
    if (radians(sweep) * (inner + outer) / 2 * unit < m_narrowestKept)
        return;
    m_sectors.push_back({m_node->szPath(), paths::lastComponent(m_node->name()),
                         std::uint64_t(m_node->shownSize()), m_node->iLevel, centre, inner * unit,
                         outer * unit, start, sweep, m_color});
}

// -- State

void PlaneCanvas::color3ub(std::uint8_t red, std::uint8_t green, std::uint8_t blue) {
    m_color = {red, green, blue};
}

void PlaneCanvas::color3d(double red, double green, double blue) {
    m_color = {byteOf(red), byteOf(green), byteOf(blue)};
}

void PlaneCanvas::Matrix::multiply(const Matrix &other) {
    for (std::size_t axis = 0; axis < scale.size(); ++axis) {
        move[axis] += scale[axis] * other.move[axis];
        scale[axis] *= other.scale[axis];
    }
}

void PlaneCanvas::matrixMode(MatrixMode mode) {
    m_mode = mode;
}

void PlaneCanvas::pushMatrix() {
    stack().push_back(stack().back());
}

void PlaneCanvas::popMatrix() {
    if (stack().size() > 1)
        stack().pop_back();
}

void PlaneCanvas::loadIdentity() {
    stack().back() = {};
}

void PlaneCanvas::translated(double x, double y, double z) {
    stack().back().multiply({{1, 1, 1}, {x, y, z}});
}

void PlaneCanvas::ortho2D(double left, double right, double bottom, double top) {
    if (left == right || bottom == top)
        return;
    stack().back().multiply(
        {{2 / (right - left), 2 / (top - bottom), -1},
         {-(right + left) / (right - left), -(top + bottom) / (top - bottom), 0}});
}

void PlaneCanvas::viewport(int x, int y, int width, int height) {
    m_viewport = {double(x), double(y), double(width), double(height)};
}

// Disks lie in the plane of depth 0.
bool PlaneCanvas::isClipped() const {
    const double depth = m_stacks[std::size_t(MatrixMode::Projection)].back().apply(
        2, m_stacks[std::size_t(MatrixMode::ModelView)].back().apply(2, 0));
    return std::abs(depth) > 1;
}

QPointF PlaneCanvas::onDevice(double x, double y) const {
    const Matrix &model = m_stacks[std::size_t(MatrixMode::ModelView)].back();
    const Matrix &projection = m_stacks[std::size_t(MatrixMode::Projection)].back();
    const double right = (projection.apply(0, model.apply(0, x)) + 1) / 2;
    const double up = (projection.apply(1, model.apply(1, y)) + 1) / 2;
    return {m_viewport.x + right * m_viewport.width,
            m_size.height() - (m_viewport.y + up * m_viewport.height)};
}

void PlaneCanvas::clearColor(float red, float green, float blue, float alpha) {
    m_clearColor = {byteOf(double(red)), byteOf(double(green)), byteOf(double(blue))};
    m_clearAlpha = byteOf(double(alpha));
}

void PlaneCanvas::clear() {
    m_sectors.clear();
    clearDevice(m_clearColor, m_clearAlpha);
}

void PlaneCanvas::flush() {}

} // namespace brightsweep
