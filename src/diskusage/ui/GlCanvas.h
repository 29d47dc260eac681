#pragma once

#include "diskusage/ChartCanvas.h"

#include <memory>

namespace brightsweep {

/// Draws the chart by OpenGL and GLU, one call for each call, in the compatibility context that is
/// current on the thread. The two libraries are loaded when the first one is made.
class GlCanvas final : public ChartCanvas {
public:
    ~GlCanvas() override;
    /// Null where a library or a function of one is missing.
    static std::unique_ptr<GlCanvas> make();

    /// Of outlines, in pixels.
    void lineWidth(float pixels);

    Quadric *newQuadric() override;
    void deleteQuadric(Quadric *quadric) override;
    void quadricDrawStyle(Quadric *quadric, DrawStyle style) override;
    void quadricWithoutNormals(Quadric *quadric) override;
    void partialDisk(Quadric *quadric, double inner, double outer, int slices, int loops,
                     double start, double sweep) override;
    void color3ub(std::uint8_t red, std::uint8_t green, std::uint8_t blue) override;
    void color3d(double red, double green, double blue) override;
    void matrixMode(MatrixMode mode) override;
    void pushMatrix() override;
    void popMatrix() override;
    void loadIdentity() override;
    void translated(double x, double y, double z) override;
    void ortho2D(double left, double right, double bottom, double top) override;
    void viewport(int x, int y, int width, int height) override;
    void clearColor(float red, float green, float blue, float alpha) override;
    void clear() override;
    void flush() override;

private:
    struct Functions;
    explicit GlCanvas(const Functions &gl) : m_gl(gl) {}

    const Functions &m_gl;
};

} // namespace brightsweep
