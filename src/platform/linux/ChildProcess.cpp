#include "platform/linux/ChildProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
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
    for (char **entry = environ; *entry; ++entry) {
        const std::string_view text(*entry);
        if (!text.starts_with("LC_") && !text.starts_with("LANG"))
            environment.emplace_back(text);
    }
    environment.emplace_back("LC_ALL=C");
    return environment;
}

std::vector<char *> pointers(std::vector<std::string> &texts) {
    std::vector<char *> result;
    for (std::string &text : texts)
        result.push_back(text.data());
    result.push_back(nullptr);
    return result;
}

} // namespace

Result<ChildProcess> ChildProcess::start(const std::vector<std::string> &arguments,
                                         bool withErrors) {
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0)
        return lastError(errno);
    ChildProcess child;
    child.m_output = FileDescriptor(ends[0]);
    const FileDescriptor writeEnd(ends[1]);
    ::fcntl(ends[0], F_SETFL, O_NONBLOCK);

    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    ::posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
    if (withErrors)
        ::posix_spawn_file_actions_adddup2(&actions, ends[1], STDERR_FILENO);
    else
        ::posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);

    posix_spawnattr_t attributes;
    ::posix_spawnattr_init(&attributes);
    sigset_t signals;
    sigemptyset(&signals);
    ::posix_spawnattr_setsigmask(&attributes, &signals);
    sigaddset(&signals, SIGPIPE);
    ::posix_spawnattr_setsigdefault(&attributes, &signals);
    ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);

    std::vector<std::string> texts = arguments;
    std::vector<std::string> environment = environmentInC();
    const int error = ::posix_spawnp(&child.m_process, texts[0].c_str(), &actions, &attributes,
                                     pointers(texts).data(), pointers(environment).data());
    ::posix_spawnattr_destroy(&attributes);
    ::posix_spawn_file_actions_destroy(&actions);
    if (error != 0) {
        child.m_process = -1;
        return lastError(error);
    }
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
    auto child = ChildProcess::start(arguments, true);
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
