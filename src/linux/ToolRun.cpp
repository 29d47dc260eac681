#include "linux/ToolRun.h"

#include "foundation/FileDescriptor.h"
#include "linux/ProcessStart.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <optional>

namespace brightsweep {

namespace {

constexpr std::size_t longestText = std::size_t(4) << 20;
// Between two looks at a tool whose pipe stays open.
constexpr int tickMilliseconds = 20;

// False at the end of the pipe.
bool readSome(int pipe, std::string &text) {
    char block[16 * 1024];
    for (;;) {
        const ssize_t got = ::read(pipe, block, sizeof block);
        if (got > 0) {
            text.append(block, std::size_t(got));
            if (text.size() > longestText)
                text.erase(0, longestText / 2);
        } else if (got == 0) {
            return false;
        } else if (errno != EINTR) {
            return errno == EAGAIN;
        }
    }
}

std::optional<int> statusOfEnded(pid_t process) {
    int status = 0;
    const pid_t ended = ::waitpid(process, &status, WNOHANG);
    if (ended == 0 || (ended < 0 && errno == EINTR))
        return std::nullopt;
    return ended < 0 ? -1 : exitStatusOf(status);
}

} // namespace

ToolOutput runToEnd(const std::vector<std::string> &arguments,
                    const std::vector<std::string> &environment) {
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0)
        return {127, std::strerror(errno)};
    const FileDescriptor pipe(ends[0]);
    FileDescriptor written(ends[1]);
    const auto [process, error] = startProcess({.arguments = arguments,
                                                .environment = environment,
                                                .output = written.get(),
                                                .errors = written.get(),
                                                .prepare = +[](int) { return ::setsid() >= 0; }});
    if (error != 0)
        return {127, arguments.front() + ": " + std::strerror(error)};
    written.reset();
    ::fcntl(pipe.get(), F_SETFL, O_NONBLOCK);
    ToolOutput output;
    for (;;) {
        pollfd polled{pipe.get(), POLLIN, 0};
        ::poll(&polled, 1, tickMilliseconds);
        const auto status = statusOfEnded(process);
        const bool isOpen = readSome(pipe.get(), output.text);
        if (status) {
            output.status = *status;
            return output;
        }
        if (!isOpen) {
            output.status = waitForProcess(process);
            return output;
        }
    }
}

} // namespace brightsweep
