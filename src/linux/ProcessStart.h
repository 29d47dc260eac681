#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace brightsweep {

/// How a program is started beside this one: what it runs, what it is given, what it is bound to.
struct ProcessStart {
    static constexpr int nowhere = -1;   ///< /dev/null
    static constexpr int inherited = -2; ///< what this process has

    /// The first one is the program; without a "/" it is looked for as the shell does.
    std::vector<std::string> arguments;
    /// The program, where the first argument is only what it is called.
    std::string program{};
    /// Else this process's own.
    std::optional<std::vector<std::string>> environment{};
    int input = nowhere;
    int output = inherited;
    int errors = inherited;
    int directory = inherited;   ///< becomes its working directory
    bool leadsGroup = false;     ///< it leads a process group of its own
    bool endsWithThread = false; ///< it is killed with the thread that starts it
    /// Called in the new process right before it becomes the program, with `directory`; false keeps
    /// it from that, with EPERM. Only system calls: it runs in this process's memory.
    bool (*prepare)(int directory) = nullptr;
};

/// Starts it, with every signal as a fresh program has it and no descriptor but the three; others
/// of this process are O_CLOEXEC. Nothing of this process's memory is copied. Gives the process and
/// 0, or why there is none as an errno.
std::pair<pid_t, int> startProcess(ProcessStart start);

/// Blocks until a process of ours has ended: its exit status, or 128 and the signal; -1 where it is
/// none of ours.
int waitForProcess(pid_t process);
/// The same for a status that waitpid() gave.
int exitStatusOf(int status);

} // namespace brightsweep
