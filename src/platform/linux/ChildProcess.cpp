#include "platform/linux/ChildProcess.h"

#include "platform/linux/BusProbe.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <string_view>
#include <utility>

extern char **environ;

namespace brightsweep {

namespace {

std::error_code lastError(int number) {
    return {number, std::generic_category()};
}

std::vector<std::string> environmentInC() {
    std::vector<std::string> environment;
    for (std::string &entry : environmentOfChildren()) {
        if (!entry.starts_with("LC_") && !entry.starts_with("LANG"))
            environment.push_back(std::move(entry));
    }
    environment.emplace_back("LC_ALL=C");
    return environment;
}

struct Start {
    char *const *arguments;
    char *const *environment;
    int nowhere;
    int output;
    bool isQuestion;
};

// Shares the memory until the tool has taken over: nothing is copied, however large this process.
// Gives the process, or why there is none.
std::pair<pid_t, int> startBeside(const Start &start) {
    volatile int error = 0;
    const pid_t process = ::vfork();
    if (process < 0)
        return {-1, errno};
    if (process == 0) {
        if (start.isQuestion)
            ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        sigset_t none;
        sigemptyset(&none);
        ::sigprocmask(SIG_SETMASK, &none, nullptr);
        ::dup2(start.nowhere, STDIN_FILENO);
        ::dup2(start.output, STDOUT_FILENO);
        ::dup2(start.isQuestion ? start.nowhere : start.output, STDERR_FILENO);
        ::execvpe(start.arguments[0], start.arguments, start.environment);
        error = errno;
        ::_exit(127);
    }
    if (error == 0)
        return {process, 0};
    while (::waitpid(process, nullptr, 0) < 0 && errno == EINTR) {
    }
    return {-1, error};
}

} // namespace

std::vector<char *> pointersTo(std::vector<std::string> &texts) {
    std::vector<char *> result;
    for (std::string &text : texts)
        result.push_back(text.data());
    result.push_back(nullptr);
    return result;
}

Result<ChildProcess> ChildProcess::start(const std::vector<std::string> &arguments,
                                         Purpose purpose) {
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0)
        return lastError(errno);
    ChildProcess child;
    child.m_output = FileDescriptor(ends[0]);
    const FileDescriptor writeEnd(ends[1]);
    const FileDescriptor nowhere(::open("/dev/null", O_RDWR | O_CLOEXEC));
    if (!nowhere || ::fcntl(ends[0], F_SETFL, O_NONBLOCK) != 0)
        return lastError(errno);
    std::vector<std::string> texts = arguments;
    std::vector<std::string> environment = environmentInC();
    const auto argumentPointers = pointersTo(texts);
    const auto environmentPointers = pointersTo(environment);
    const Start start = {argumentPointers.data(), environmentPointers.data(), nowhere.get(),
                         writeEnd.get(), purpose == Purpose::Question};
    const auto [process, error] = startBeside(start);
    if (error != 0)
        return lastError(error);
    child.m_process = process;
    return child;
}

ChildProcess::ChildProcess(ChildProcess &&other) noexcept
    : m_process(std::exchange(other.m_process, -1)), m_output(std::move(other.m_output)) {}

ChildProcess &ChildProcess::operator=(ChildProcess &&other) noexcept {
    std::swap(m_process, other.m_process);
    std::swap(m_output, other.m_output);
    return *this;
}

ChildProcess::~ChildProcess() {
    if (m_process <= 0 || ::waitpid(m_process, nullptr, WNOHANG) != 0)
        return;
    ::kill(m_process, SIGKILL);
    ::waitpid(m_process, nullptr, WNOHANG);
}

bool ChildProcess::read(std::string &text) {
    for (;;) {
        char block[4096];
        const ssize_t count = ::read(m_output.get(), block, sizeof block);
        if (count > 0)
            text.append(block, std::size_t(count));
        else if (count == 0)
            return false;
        else if (errno != EINTR)
            return errno == EAGAIN;
    }
}

void ChildProcess::kill() {
    ::kill(m_process, SIGKILL);
}

int ChildProcess::wait() {
    int status = 0;
    while (::waitpid(m_process, &status, 0) < 0) {
        if (errno != EINTR)
            return -1;
    }
    m_process = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

Result<ToolResult> runTool(const std::vector<std::string> &arguments) {
    auto child = ChildProcess::start(arguments, ChildProcess::Purpose::Act);
    if (!child)
        return child.error();
    ToolResult result;
    while (child->read(result.output)) {
        pollfd waiting = {child->output(), POLLIN, 0};
        ::poll(&waiting, 1, -1);
    }
    result.status = child->wait();
    return result;
}

} // namespace brightsweep
