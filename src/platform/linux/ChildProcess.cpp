#include "platform/linux/ChildProcess.h"

#include "linux/ProcessStart.h"
#include "platform/linux/BusProbe.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <string_view>
#include <utility>

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

} // namespace

Result<ChildProcess> ChildProcess::start(const std::vector<std::string> &arguments,
                                         Purpose purpose) {
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0)
        return lastError(errno);
    ChildProcess child;
    child.m_output = FileDescriptor(ends[0]);
    const FileDescriptor writeEnd(ends[1]);
    if (::fcntl(ends[0], F_SETFL, O_NONBLOCK) != 0)
        return lastError(errno);
    const bool isQuestion = purpose == Purpose::Question;
    const auto [process, error] =
        startProcess({.arguments = arguments,
                      .environment = environmentInC(),
                      .output = writeEnd.get(),
                      .errors = isQuestion ? ProcessStart::nowhere : writeEnd.get(),
                      .endsWithThread = isQuestion});
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
    return waitForProcess(std::exchange(m_process, -1));
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
