#pragma once

#include <QIcon>

namespace brightsweep {

/// Takes the dark sister of the desktop's icon theme ("breeze-dark" for "breeze") where there is
/// one: the program's ground is dark whatever the desktop's is. Main thread.
void useDarkIconTheme();

/// False where an icon would hardly be seen on the program's ground: its mean contrast with it, by
/// the relative luminance of WCAG 2.1, is under 2 to 1. Main thread.
bool isSeenOnGround(const QIcon &icon);

} // namespace brightsweep
