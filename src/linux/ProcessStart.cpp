#include "linux/ProcessStart.h"

#include <fcntl.h>
#include <pthread.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>

extern char **environ;

namespace brightsweep {

namespace {

constexpr int endedBySignal = 128;

bool takeOver(int descriptor, int place) {
    if (descriptor == ProcessStart::inherited)
        return true;
    if (descriptor == ProcessStart::nowhere)
        descriptor = ::open("/dev/null", O_RDWR | O_CLOEXEC);
    return ::dup2(descriptor, place) == place;
}

// Shares the parent's memory, as after vfork(): only system calls, and no return.
[[noreturn]] void becomeProgram(const ProcessStart &start, char *const *arguments,
                                char *const *environment, volatile int &error) {
    if (start.endsWithThread)
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (start.leadsGroup)
        ::setpgid(0, 0);
    struct sigaction usual {};
    usual.sa_handler = SIG_DFL;
    for (int number = 1; number < NSIG; ++number)
        ::sigaction(number, &usual, nullptr);
    if (takeOver(start.input, STDIN_FILENO) && takeOver(start.output, STDOUT_FILENO) &&
        takeOver(start.errors, STDERR_FILENO) &&
        (start.directory == ProcessStart::inherited || ::fchdir(start.directory) == 0)) {
        if (start.prepare && !start.prepare(start.directory)) {
            error = EPERM;
            ::_exit(127);
        }
        sigset_t none;
        sigemptyset(&none);
        ::sigprocmask(SIG_SETMASK, &none, nullptr);
        ::execvpe(start.program.empty() ? arguments[0] : start.program.c_str(), arguments,
                  environment);
    }
    error = errno;
    ::_exit(127);
}

// As the system takes arguments and environments: valid while the texts live unchanged.
std::vector<char *> pointersTo(std::vector<std::string> &texts) {
    std::vector<char *> result;
    for (std::string &text : texts)
        result.push_back(text.data());
    result.push_back(nullptr);
    return result;
}

} // namespace

std::pair<pid_t, int> startProcess(ProcessStart start) {
    const auto arguments = pointersTo(start.arguments);
    std::vector<char *> given;
    if (start.environment)
        given = pointersTo(*start.environment);
    volatile int error = 0;
    // A handler of ours must not run in the child, which shares our memory.
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    ::pthread_sigmask(SIG_SETMASK, &all, &before);
    const pid_t process = ::vfork();
    if (process == 0)
        becomeProgram(start, arguments.data(), start.environment ? given.data() : environ, error);
    const int noProcess = errno;
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    if (process < 0)
        return {-1, noProcess};
    if (error == 0)
        return {process, 0};
    waitForProcess(process);
    return {-1, error};
}

int waitForProcess(pid_t process) {
    int status = 0;
    while (::waitpid(process, &status, 0) < 0) {
        if (errno != EINTR)
            return -1;
    }
    return exitStatusOf(status);
}

int exitStatusOf(int status) {
    return WIFEXITED(status) ? WEXITSTATUS(status) : endedBySignal + WTERMSIG(status);
}

} // namespace brightsweep
