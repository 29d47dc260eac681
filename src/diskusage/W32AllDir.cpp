#include "diskusage/W32AllDir.h"

#include "diskusage/ChartCanvas.h"
#include "diskusage/NodeArena.h"

#include <algorithm>
#include <ctime>
#include <memory>
#include <new>

namespace brightsweep {

// One tree holds one of these for each directory of a volume: eight bytes count.
static_assert(sizeof(void *) != 8 || sizeof(W32AllDir) == 120);

namespace {

constexpr double degreesPerSlice = 3.0;
constexpr double fewestSlices = 2;
constexpr double mostSlices = 360; // a sector wider than the circle is no rounder
constexpr std::int64_t fadeSeconds = 10;
constexpr std::int64_t fadePerSecond = 5;

} // namespace

W32AllDir *W32AllDir::newRoot() {
    auto arena = std::make_unique<NodeArena>();
    auto *root = new (arena->allocate(sizeof(W32AllDir))) W32AllDir;
    root->becomeRoot(arena.release());
    return root;
}

AllDir *W32AllDir::newAllDir() {
    auto *child = new (arena().allocate(sizeof(W32AllDir))) W32AllDir;
    child->becomeChildOf(*this);
    return child;
}

void W32AllDir::StatusMessage(const char *, const char *) {
    ChartCanvas *const canvas = ChartCanvas::current();
    if (!canvas)
        return;
    canvas->popMatrix();
    canvas->matrixMode(ChartCanvas::MatrixMode::Projection);
    canvas->popMatrix();
    canvas->matrixMode(ChartCanvas::MatrixMode::ModelView);
}

void W32AllDir::DrawSector(double start, double sweep, double inner, double outer, bool selected) {
    ChartCanvas *const canvas = ChartCanvas::current();
    ChartCanvas::Quadric *const quadric = canvas ? canvas->newQuadric() : nullptr;
    if (!quadric)
        return;
    canvas->beginSector(*this);
    canvas->pushMatrix();
    int r = 0;
    int g = 0;
    int b = 0;
    GetColor(selected, r, g, b);
    if (!selected && iLevel > 1 && view.colouring != ChartColouring::Place) {
        const auto &colour = chartColours(
            view.colouring)[chartColourOf(*this, view.colouring, std::int64_t(std::time(nullptr)))];
        r = colour.rgb[0];
        g = colour.rgb[1];
        b = colour.rgb[2];
    }
    canvas->quadricDrawStyle(quadric, ChartCanvas::DrawStyle::Silhouette);
    const std::int64_t left = tActivity - std::int64_t(std::time(nullptr)) + fadeSeconds;
    const std::int64_t fade = left > 0 ? fadePerSecond * left : 0;
    // The low byte of a colour: a large fade wraps around.
    const auto low = [](std::int64_t value) { return std::uint8_t(std::uint64_t(value)); };
    const int slices = int(std::clamp(sweep / degreesPerSlice, fewestSlices, mostSlices));
    if (selected)
        canvas->color3d(0, 0, 96.0); // full blue
    else
        canvas->color3ub(85, 85, 85);
    canvas->partialDisk(quadric, inner, outer, slices, 1, start, sweep);
    // A colour that nothing is drawn with.
    if (selected)
        canvas->color3ub(low(fade + 148), 169, 201);
    else
        canvas->color3ub(255, low(255 - fade), low(255 - fade));
    canvas->quadricDrawStyle(quadric, ChartCanvas::DrawStyle::Fill);
    canvas->quadricWithoutNormals(quadric);
    canvas->color3ub(low(r), low(g - fade), low(b - fade));
    canvas->partialDisk(quadric, inner, outer, slices, 1, start, sweep);
    canvas->popMatrix();
    canvas->deleteQuadric(quadric);
}

} // namespace brightsweep
