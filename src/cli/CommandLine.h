#pragma once

namespace brightsweep::cli {

/// Runs one command of the command line and returns the exit status.
int runCommandLine(int argc, char **argv);

} // namespace brightsweep::cli
