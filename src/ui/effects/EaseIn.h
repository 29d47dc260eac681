#pragma once

#include <QEasingCurve>

namespace brightsweep {

/// The curve of everything that flies: slow at first, then faster up to its end.
QEasingCurve easeIn();

} // namespace brightsweep
