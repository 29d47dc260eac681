#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace brightsweep::test {

/// How a child process ended, and what it said.
struct ChildResult {
    int status = -1; ///< the exit status; 128 plus the number of the signal that ended it
    std::string output;
    std::string errors;
};

/// Runs a program to its end, with the test's environment and the given additions to it.
ChildResult runProgram(const std::vector<std::string> &arguments,
                       const std::map<std::string, std::string> &environment = {});

/// Runs a function in a forked child, which ends with its result. The function makes no thread and
/// reports by its result alone. A child that is root can give its rights up first.
int runInChild(const std::function<int()> &function);

/// Makes the calling process the unprivileged user "nobody", for good. False where that fails.
bool becomeUnprivileged();

/// Mounts a new tmpfs of that many bytes on a folder, in a mount namespace of the calling process
/// alone, for good. False where that is not allowed.
bool mountSmallFileSystem(const std::string &folder, unsigned long bytes);

} // namespace brightsweep::test
