#pragma once

#include <QPixmap>
#include <QPoint>

class QAbstractItemView;
class QWidget;

namespace brightsweep {

/// The side of an icon that flies.
inline constexpr int flyingSide = 32;

/// Lets the icon of what was ticked fly from a point of a list to a control below it; both stand in
/// the panel. A few at once at most, as more would be a swarm. Main thread.
void flyTick(QWidget &panel, const QAbstractItemView &list, QPoint from, const QWidget &to,
             const QPixmap &icon);

} // namespace brightsweep
