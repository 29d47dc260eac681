#include "helper/RemovalTool.h"

#include "foundation/FileDescriptor.h"
#include "helper/Confinement.h"
#include "helper/Frame.h"
#include "linux/ProcessStart.h"

#include <fcntl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <ctime>
#include <string_view>

namespace brightsweep::helper {

namespace {

constexpr char removalTool[] = "/bin/rm";
// Between the polite signal and the other, and at most until the tool is left to the kernel.
constexpr int politeMilliseconds = 200;
constexpr int patienceMilliseconds = 900;

// The directory without anything that is mounted below it, now or later: the tool tells mounts by
// their device alone, and would go into one of the same file system. None where the kernel refuses.
FileDescriptor openAlone(int directory) {
    constexpr unsigned openTreeClone = 1; // OPEN_TREE_CLONE, which not every header has
    return FileDescriptor(
        int(::syscall(SYS_open_tree, directory, "", AT_EMPTY_PATH | openTreeClone | O_CLOEXEC)));
}

// Waits for a child of ours; false when it has not ended by then.
bool waitFor(pid_t child, int milliseconds) {
    constexpr int step = 10;
    for (int waited = 0;; waited += step) {
        if (::waitpid(child, nullptr, WNOHANG) != 0)
            return true;
        if (waited >= milliseconds)
            return false;
        const timespec pause{0, step * 1'000'000L};
        ::nanosleep(&pause, nullptr);
    }
}

} // namespace

ToolEnd runRemovalTool(int directory, const std::vector<std::string> &names,
                       const std::function<bool(int output)> &wait) {
    ToolEnd end;
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0) {
        end.output = std::strerror(errno);
        return end;
    }
    const FileDescriptor reading(ends[0]);
    FileDescriptor writing(ends[1]);
    std::vector<std::string> words = {"rm", "-rf", "--one-file-system", "--"};
    for (const std::string &name : names)
        words.push_back("./" + name);
    const FileDescriptor alone = openAlone(directory);
    const auto [child, error] = startProcess({.arguments = std::move(words),
                                              .program = removalTool,
                                              .environment = {{"LC_ALL=C"}},
                                              .output = writing.get(),
                                              .errors = writing.get(),
                                              .directory = alone ? alone.get() : directory,
                                              .leadsGroup = true,
                                              .prepare = confineToRemoving});
    if (error != 0) {
        end.output = std::string("the removal tool cannot be started: ") + std::strerror(error);
        return end;
    }
    writing.reset();
    end.started = true;

    char block[4096];
    while (!end.stopped) {
        if (!wait(reading.get())) {
            end.stopped = true;
            break;
        }
        const ssize_t got = ::read(reading.get(), block, sizeof block);
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            break;
        end.output.append(block, std::min(std::size_t(got), maximumOutput - end.output.size()));
    }
    if (!end.stopped) {
        waitForProcess(child);
        return end;
    }
    ::kill(-child, SIGTERM);
    if (!waitFor(child, politeMilliseconds)) {
        ::kill(-child, SIGKILL);
        // One that the kernel keeps in a call goes when that returns; nobody waits for it.
        waitFor(child, patienceMilliseconds - politeMilliseconds);
    }
    return end;
}

} // namespace brightsweep::helper
