#include "diskusage/ChartCanvas.h"

#include <utility>

namespace brightsweep {

namespace {

thread_local ChartCanvas *canvasInUse = nullptr;

} // namespace

ChartCanvas::~ChartCanvas() = default;

ChartCanvas *ChartCanvas::current() {
    return canvasInUse;
}

void ChartCanvas::beginSector(const AllDir &) {}

ChartCanvas::Use::Use(ChartCanvas &canvas) : m_before(std::exchange(canvasInUse, &canvas)) {}
ChartCanvas::Use::~Use() {
    canvasInUse = m_before;
}

} // namespace brightsweep
