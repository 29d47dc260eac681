#pragma once

#include "cleaning/CleanWindow.h"

namespace brightsweep {

/// The window of the quick clean and the bubble of its report. It stands above other windows.
/// Dropped while its run is under way it takes itself off the screen at once; the run's controller
/// and a bubble on show stay for their time. Main thread.
std::unique_ptr<CleanWindow> makeQuickCleanWindow();

} // namespace brightsweep
