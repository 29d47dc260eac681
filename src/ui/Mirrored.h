#pragma once

#include <QRect>

namespace brightsweep {

/// Where a part of a row is painted that stands at `part` for readers from left to right: on the
/// row's other side where the layout runs from right to left. Text needs no more, since a painter
/// turns its alignment by itself. Main thread.
QRect mirrored(const QRect &row, const QRect &part);
QRectF mirrored(const QRectF &row, const QRectF &part);

} // namespace brightsweep
