#pragma once

class QPainterPath;
class QWidget;

namespace brightsweep {

/// Cuts a translucent window to the shape that it paints, one pixel wider all round: with a
/// compositor its edge stays smooth, without one nothing black is left in its corners.
void clipWindow(QWidget &window, const QPainterPath &shape);

} // namespace brightsweep
