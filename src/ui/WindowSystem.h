#pragma once

#include <string>

class QWidget;

namespace brightsweep {

/// False where the compositor alone decides where a window stands.
bool windowsPlaceThemselves();

/// Shows a window in front of all others, with the keyboard. The token, which may be empty, is what
/// the desktop gave for that.
void showInFront(QWidget &window, const std::string &activationToken);

} // namespace brightsweep
