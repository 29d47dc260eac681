#pragma once

namespace brightsweep::cli {

/// Runs one command of the command line and returns the exit status. The process then ends by
/// std::_Exit, so that no destructor meets a thread that still waits for a service; everything has
/// been written by then.
int runCommandLine(int argc, char **argv);

} // namespace brightsweep::cli
