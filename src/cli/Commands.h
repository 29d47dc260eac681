#pragma once

#include "cli/Command.h"

namespace brightsweep::cli {

// One file per command.

} // namespace brightsweep::cli
