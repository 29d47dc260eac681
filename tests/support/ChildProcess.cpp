#include "support/ChildProcess.h"

#include <fcntl.h>
#include <grp.h>
#include <poll.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <utility>

namespace brightsweep::test {

namespace {

int statusOf(pid_t child) {
    int status = 0;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

bool becomeThreadless() {
    const auto user = uid_t(1'000'000 + ::getpid());
    const rlimit alone = {1, 1};
    return ::setrlimit(RLIMIT_NPROC, &alone) == 0 && ::setgroups(0, nullptr) == 0 &&
           ::setresgid(user, user, user) == 0 && ::setresuid(user, user, user) == 0;
}

struct Pipe {
    FileDescriptor readEnd;
    FileDescriptor writeEnd;
    Pipe() {
        int ends[2];
        if (::pipe2(ends, O_CLOEXEC) != 0)
            throw std::runtime_error("pipe2");
        readEnd = FileDescriptor(ends[0]);
        writeEnd = FileDescriptor(ends[1]);
    }
};

// Reads both to their ends, whichever speaks first.
void drain(FileDescriptor &first, std::string &firstText, FileDescriptor &second,
           std::string &secondText) {
    struct Source {
        FileDescriptor &end;
        std::string &text;
    } sources[] = {{first, firstText}, {second, secondText}};
    while (sources[0].end || sources[1].end) {
        pollfd waits[2];
        for (int i = 0; i < 2; ++i)
            waits[i] = {sources[i].end.get(), POLLIN, 0};
        if (::poll(waits, 2, -1) < 0)
            continue;
        for (int i = 0; i < 2; ++i) {
            if (!waits[i].revents)
                continue;
            char block[4096];
            const ssize_t got = ::read(sources[i].end.get(), block, sizeof block);
            if (got > 0)
                sources[i].text.append(block, std::size_t(got));
            else
                sources[i].end.reset();
        }
    }
}

} // namespace

RunningProgram::RunningProgram(const std::vector<std::string> &arguments,
                               const std::map<std::string, std::string> &environment, RunAs user) {
    std::vector<char *> vector;
    for (const std::string &argument : arguments)
        vector.push_back(const_cast<char *>(argument.c_str()));
    vector.push_back(nullptr);
    Pipe output;
    Pipe errors;
    m_process = ::fork();
    if (m_process < 0)
        throw std::runtime_error("fork");
    if (m_process == 0) {
        ::dup2(output.writeEnd.get(), STDOUT_FILENO);
        ::dup2(errors.writeEnd.get(), STDERR_FILENO);
        for (const auto &[name, value] : environment)
            ::setenv(name.c_str(), value.c_str(), 1);
        if (user == RunAs::Caller) {
            ::execvp(vector[0], vector.data());
        } else {
            const int program = ::open(vector[0], O_RDONLY | O_CLOEXEC);
            if (user == RunAs::Threadless ? becomeThreadless() : becomeUnprivileged())
                ::fexecve(program, vector.data(), environ);
        }
        ::_exit(127);
    }
    m_output = std::move(output.readEnd);
    m_errors = std::move(errors.readEnd);
}

RunningProgram::~RunningProgram() {
    signal(SIGKILL);
    if (m_process > 0)
        statusOf(m_process);
}

void RunningProgram::signal(int number) {
    if (m_process > 0)
        ::kill(m_process, number);
}

bool RunningProgram::hasEnded() const {
    siginfo_t info{};
    return m_process <= 0 ||
           (::waitid(P_PID, id_t(m_process), &info, WEXITED | WNOHANG | WNOWAIT) == 0 &&
            info.si_pid != 0);
}

ChildResult RunningProgram::finish() {
    ChildResult result;
    drain(m_output, result.output, m_errors, result.errors);
    result.status = statusOf(std::exchange(m_process, -1));
    return result;
}

ChildResult runProgram(const std::vector<std::string> &arguments,
                       const std::map<std::string, std::string> &environment, RunAs user) {
    return RunningProgram(arguments, environment, user).finish();
}

int runInChild(const std::function<int()> &function) {
    std::fflush(nullptr);
    const pid_t child = ::fork();
    if (child < 0)
        throw std::runtime_error("fork");
    if (child == 0) {
        int status = 125;
        try {
            status = function();
        } catch (...) {
        }
        ::_exit(status);
    }
    return statusOf(child);
}

bool becomeUnprivileged() {
    if (::geteuid() != 0)
        return true;
    return ::setgroups(0, nullptr) == 0 &&
           ::setresgid(unprivilegedUser, unprivilegedUser, unprivilegedUser) == 0 &&
           ::setresuid(unprivilegedUser, unprivilegedUser, unprivilegedUser) == 0;
}

bool enterPrivateMounts() {
    return ::unshare(CLONE_FS | CLONE_NEWNS) == 0 &&
           ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

bool bindMount(const std::filesystem::path &from, const std::filesystem::path &to) {
    return ::mount(from.c_str(), to.c_str(), nullptr, MS_BIND, nullptr) == 0;
}

bool mountSmallFileSystem(const std::string &folder, unsigned long bytes) {
    const std::string size = "size=" + std::to_string(bytes);
    return enterPrivateMounts() && ::mount("small", folder.c_str(), "tmpfs", 0, size.c_str()) == 0;
}

} // namespace brightsweep::test
