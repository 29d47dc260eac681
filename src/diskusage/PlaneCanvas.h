#pragma once

#include "diskusage/ChartCanvas.h"

#include <QPointF>
#include <QSizeF>

#include <array>
#include <span>
#include <string>
#include <vector>

namespace brightsweep {

/// A canvas that works its drawing out itself: it keeps the matrices and the colour as OpenGL does,
/// turns partial disks into the polygons that GLU makes of them, and hands those over in the
/// coordinates of the device, y growing downwards. The size is the device's.
class PlaneCanvas : public ChartCanvas {
public:
    using Colour = std::array<std::uint8_t, 3>;

    /// A sector as it was filled, for labels and for whatever else is laid over the chart.
    struct Sector {
        std::string path; ///< of the directory, with a trailing "/"
        std::string name;
        std::uint64_t bytes = 0;
        int level = 0;
        QPointF centre; ///< of the rings, in the device, as the radii
        double inner = 0;
        double outer = 0;
        double start = 0; ///< degrees, clockwise from the top
        double sweep = 0;
        Colour fill{};
    };

    ~PlaneCanvas() override;

    /// Keeps what is drawn from now on that is at least so wide, along the middle of its ring.
    void keepSectors(double narrowest) { m_narrowestKept = narrowest; }
    const std::vector<Sector> &sectors() const { return m_sectors; }

    void beginSector(const AllDir &node) override;
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

protected:
    explicit PlaneCanvas(QSizeF size);

    /// An area within one or two closed outlines; the second, where there is one, is a hole.
    struct Area {
        std::span<const QPointF> outer;
        std::span<const QPointF> hole;
    };
    virtual void drawOutline(const Area &area, Colour colour) = 0;
    virtual void fillArea(const Area &area, Colour colour) = 0;
    /// Takes away what was drawn; the alpha of the colour is 0 to 255.
    virtual void clearDevice(Colour colour, std::uint8_t alpha) = 0;
    /// The next drawing belongs to that directory.
    virtual void beginDirectory(const AllDir &node);

    QSizeF size() const { return m_size; }

private:
    // Scales and moves, which is all that a chart asks for.
    struct Matrix {
        std::array<double, 3> scale{1, 1, 1};
        std::array<double, 3> move{0, 0, 0};

        void multiply(const Matrix &other);
        double apply(int axis, double value) const {
            return value * scale[std::size_t(axis)] + move[std::size_t(axis)];
        }
    };
    struct Viewport {
        double x = 0;
        double y = 0;
        double width = 0;
        double height = 0;
    };

    std::vector<Matrix> &stack() { return m_stacks[std::size_t(m_mode)]; }
    bool isClipped() const;
    QPointF onDevice(double x, double y) const;
    void addArc(double radius, int slices, double start, double sweep, bool backwards);
    void keep(double inner, double outer, double start, double sweep);

    QSizeF m_size;
    Viewport m_viewport;
    std::array<std::vector<Matrix>, 2> m_stacks;
    MatrixMode m_mode = MatrixMode::ModelView;
    DrawStyle m_style = DrawStyle::Fill;
    Colour m_color{255, 255, 255};
    Colour m_clearColor{};
    std::uint8_t m_clearAlpha = 0;
    std::vector<QPointF> m_points; // of the disk under way; kept for its storage
    double m_narrowestKept = -1;
    const AllDir *m_node = nullptr; // of the sector under way
    std::vector<Sector> m_sectors;
};

} // namespace brightsweep
