#pragma once

#include <string>
#include <vector>

namespace brightsweep {

/// A process, as far as the system shows it to this user.
struct RunningProgram {
    std::string name;
    std::string file; ///< its program's path; empty where that is not shown
    /// Of an interpreter, the path of what it runs, where that is told in full.
    std::string script;
    std::string group; ///< the control groups that it is in, as lines of cgroup(7)
};

/// Every process but this one. Looks at them all: not for the main thread.
std::vector<RunningProgram> runningPrograms();

} // namespace brightsweep
