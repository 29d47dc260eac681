#pragma once

#include <functional>
#include <string_view>

namespace brightsweep {

/// A command of the arguments: the exit status where they hold it, else -1.
using EntryCommand = int (*)(int argc, const char *const *argv);

/// Opens the log of that file name.
using EntryLog = void (*)(std::string_view fileName);

/// What the process does before anything else, in three steps: it ends at once with 0 on a system
/// below 10.6.0, opens the log, and honours the command "fr", which `freeMemory` reads. Then
/// the application's own main runs and gives the exit status. The platform has been set up before.
int runEntry(int argc, char **argv, EntryLog openLog, EntryCommand freeMemory,
             const std::function<int()> &applicationMain);

} // namespace brightsweep
