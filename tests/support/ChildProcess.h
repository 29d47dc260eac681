#pragma once

#include "foundation/FileDescriptor.h"
#include "support/WaitUntil.h"

#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include <sys/types.h>

namespace brightsweep::test {

/// How a child process ended, and what it said.
struct ChildResult {
    int status = -1; ///< the exit status; 128 plus the number of the signal that ended it
    std::string output;
    std::string errors;
};

/// The user "nobody", who owns nothing but what a test gives him.
inline constexpr unsigned unprivilegedUser = 65'534;

enum class RunAs {
    Caller,
    Unprivileged,
    Threadless, ///< a user of whom there is nobody else, and who may not have another thread
};

/// A program that runs beside the test, with the test's environment and the given additions to it.
/// Without rights it may lie where that user has no way to. Killed at the end of the scope.
class RunningProgram {
public:
    explicit RunningProgram(const std::vector<std::string> &arguments,
                            const std::map<std::string, std::string> &environment = {},
                            RunAs user = RunAs::Caller);
    ~RunningProgram();
    RunningProgram(const RunningProgram &) = delete;
    RunningProgram &operator=(const RunningProgram &) = delete;

    pid_t process() const { return m_process; }
    void signal(int number);
    bool hasEnded() const;
    /// Reads what it says to the end and waits for it; once.
    ChildResult finish();

private:
    FileDescriptor m_output;
    FileDescriptor m_errors;
    pid_t m_process = -1;
};

/// Runs a program to its end.
ChildResult runProgram(const std::vector<std::string> &arguments,
                       const std::map<std::string, std::string> &environment = {},
                       RunAs user = RunAs::Caller);

/// Runs a function in a forked child, which ends with its result. The function makes no thread and
/// reports by its result alone. A child that is root can give its rights up first.
int runInChild(const std::function<int()> &function);

/// Makes the calling process the unprivileged user "nobody", for good. False where that fails.
bool becomeUnprivileged();

/// A mount namespace of the calling thread's own, for good: what is mounted in it is seen by nobody
/// else. False where that is not allowed.
bool enterPrivateMounts();
/// Shows a file or folder at another place as well, across which nothing may be removed.
bool bindMount(const std::filesystem::path &from, const std::filesystem::path &to);

/// Mounts a new tmpfs of that many bytes on a folder, in a mount namespace of the calling process
/// alone, for good. False where that is not allowed.
bool mountSmallFileSystem(const std::string &folder, unsigned long bytes);

} // namespace brightsweep::test
