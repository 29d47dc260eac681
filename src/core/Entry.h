#pragma once

#include <functional>

namespace brightsweep {

/// What the process does before anything else, in three steps: it ends at once with 0 on a system
/// below 10.6.0, redirects the log, and honours the command "fr". Then the application's own main
/// runs and gives the exit status. The platform has been set up before.
int runEntry(int argc, char **argv, const std::function<int()> &applicationMain);

} // namespace brightsweep
