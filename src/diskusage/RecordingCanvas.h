#pragma once

#include "diskusage/ChartCanvas.h"

#include <array>
#include <vector>

namespace brightsweep {

/// Keeps what was drawn instead of showing it: every sector in drawing order, and the state of the
/// matrix stacks. For output without a screen, and for tests.
class RecordingCanvas final : public ChartCanvas {
public:
    struct Sector {
        const AllDir *node = nullptr;
        int level = 0;
        double start = 0;
        double sweep = 0;
        double inner = 0;
        double outer = 0;
        int slices = 0;
        int loops = 0;
        std::array<double, 3> outline{}; ///< 0 to 255, as a screen would show them
        std::array<std::uint8_t, 3> fill{};
    };

    std::vector<Sector> sectors;
    /// Matrices pushed and not popped, and pops that found nothing to take.
    int pushed = 0;
    int failedPops = 0;
    unsigned frames = 0; ///< times that it was cleared
    /// While set, no quadric can be made.
    bool outOfQuadrics = false;

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

private:
    DrawStyle m_style = DrawStyle::Fill;
    std::array<double, 3> m_color{};
};

} // namespace brightsweep
