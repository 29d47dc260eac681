#pragma once

namespace brightsweep::cli {

/// For the beginning of main(), before any thread. Divides the process, as Interruption says, and
/// decides what an exception that nobody handles comes to, on any thread, want of memory above all:
/// one line on standard error and exit status 1.
void beginCommandLine();

/// Runs one command of the command line and returns the exit status, for Interruption::end(), so
/// that no destructor meets a thread that still waits for a service; everything has been written by
/// then.
int runCommandLine(int argc, char **argv);

} // namespace brightsweep::cli
