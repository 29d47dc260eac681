#pragma once

#include <memory>

namespace brightsweep {

class MAAttachedWindow;
struct Bubble;

/// The window of one bubble, on show at that place of the stack in the top right corner of the main
/// screen, or at the left side of the popup while that is open. Main thread; X11 only.
std::unique_ptr<MAAttachedWindow> showBubbleWindow(const Bubble &content, int place);

} // namespace brightsweep
