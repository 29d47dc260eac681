#pragma once

#include <cstdint>

namespace brightsweep {

class AllDir;

/// What the ring chart is drawn on: colours, quadrics and the matrix stacks, in the terms of OpenGL
/// and GLU. The node of the size tree draws on the canvas in use, as it would on the context in
/// use. Each thread has its own.
class ChartCanvas {
public:
    enum class DrawStyle { Silhouette, Fill };
    enum class MatrixMode { ModelView, Projection };
    /// Whatever the canvas makes it; the caller hands it back to deleteQuadric().
    class Quadric;

    virtual ~ChartCanvas();

    /// Null when the thread has none in use.
    static ChartCanvas *current();

    /// Says whose sector the next calls draw; a screen has no use for it.
    virtual void beginSector(const AllDir &node);

    /// Null when there is no memory for one.
    virtual Quadric *newQuadric() = 0;
    virtual void deleteQuadric(Quadric *quadric) = 0;
    virtual void quadricDrawStyle(Quadric *quadric, DrawStyle style) = 0;
    virtual void quadricWithoutNormals(Quadric *quadric) = 0;
    /// A piece of a ring: angles in degrees, clockwise from the positive y axis.
    virtual void partialDisk(Quadric *quadric, double inner, double outer, int slices, int loops,
                             double start, double sweep) = 0;

    virtual void color3ub(std::uint8_t red, std::uint8_t green, std::uint8_t blue) = 0;
    /// 1.0 is full; what lies above counts as that.
    virtual void color3d(double red, double green, double blue) = 0;

    virtual void matrixMode(MatrixMode mode) = 0;
    virtual void pushMatrix() = 0;
    /// A pop without a push is an error of the canvas's own and changes nothing.
    virtual void popMatrix() = 0;
    virtual void loadIdentity() = 0;
    virtual void translated(double x, double y, double z) = 0;
    virtual void ortho2D(double left, double right, double bottom, double top) = 0;
    virtual void viewport(int x, int y, int width, int height) = 0;

    virtual void clearColor(float red, float green, float blue, float alpha) = 0;
    /// Colour and depth.
    virtual void clear() = 0;
    virtual void flush() = 0;

    /// Puts a canvas in use on this thread for as long as it lives.
    class [[nodiscard]] Use {
    public:
        explicit Use(ChartCanvas &canvas);
        ~Use();
        Use(const Use &) = delete;
        Use &operator=(const Use &) = delete;

    private:
        ChartCanvas *m_before;
    };
};

} // namespace brightsweep
