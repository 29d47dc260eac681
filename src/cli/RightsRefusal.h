#pragma once

#include "cli/Command.h"

namespace brightsweep::cli {

/// After a question for administrator rights that was not granted: the line that says why. Returns
/// the exit status.
int rightsRefused(Output &output);

} // namespace brightsweep::cli
