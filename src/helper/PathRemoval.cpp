#include "helper/PathRemoval.h"

#include "foundation/FileDescriptor.h"
#include "foundation/PathBytes.h"
#include "linux/KernelFileSystems.h"
#include "linux/LongPath.h"
#include "linux/MountTable.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstring>

namespace brightsweep::helper {

namespace {

constexpr char removalTool[] = "/bin/rm";
constexpr int placeFlags = O_PATH | O_DIRECTORY | O_CLOEXEC;

Reply refused(std::string reason) {
    reason.resize(std::min(reason.size(), maximumOutput));
    return {false, false, std::move(reason)};
}

std::string words(int error) {
    return std::strerror(error);
}

bool isGone(int parent, const char *name) {
    struct stat status;
    return ::fstatat(parent, name, &status, AT_SYMLINK_NOFOLLOW) != 0 && errno == ENOENT;
}

// Only calls that are safe after a fork; never returns.
[[noreturn]] void becomeTool(int parent, int output, char *argument) {
    const int input = ::open("/dev/null", O_RDONLY);
    if (::fchdir(parent) == 0 && ::dup2(input, 0) == 0 && ::dup2(output, 1) == 1 &&
        ::dup2(output, 2) == 2) {
        for (const int number : {SIGPIPE, SIGINT, SIGHUP, SIGQUIT})
            ::signal(number, SIG_DFL);
        char tool[] = "rm";
        char recursively[] = "-rf";
        char endOfOptions[] = "--";
        char locale[] = "LC_ALL=C";
        char *const arguments[] = {tool, recursively, endOfOptions, argument, nullptr};
        char *const environment[] = {locale, nullptr};
        ::execve(removalTool, arguments, environment);
    }
    constexpr char message[] = "the removal tool cannot be started";
    if (::write(output, message, sizeof message - 1) < 0)
        ::_exit(126);
    ::_exit(127);
}

// Runs the tool on the name and gives the beginning of what it said.
Reply runTool(int parent, const std::string &name) {
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0)
        return refused(words(errno));
    const FileDescriptor reading(ends[0]);
    FileDescriptor writing(ends[1]);
    std::string argument = "./" + name;
    const pid_t child = ::fork();
    if (child < 0)
        return refused(words(errno));
    if (child == 0)
        becomeTool(parent, writing.get(), argument.data());
    writing.reset();

    Reply reply;
    reply.performed = true;
    char block[4096];
    for (;;) {
        const ssize_t got = ::read(reading.get(), block, sizeof block);
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            break;
        const auto room = maximumOutput - reply.output.size();
        reply.output.append(block, std::min(std::size_t(got), room));
    }
    while (::waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
    }
    reply.gone = isGone(parent, name.c_str());
    return reply;
}

} // namespace

Reply PathRemoval::run(const RemovePath &removal) const {
    if (const auto reason = refusalOfWords(removal); !reason.empty())
        return refused(std::string(reason));
    const auto shortened = shortenPath(removal.root);
    if (!shortened)
        return refused(shortened.error().message());
    FileDescriptor directory(::openat(shortened->base(), shortened->name.c_str(), placeFlags));
    struct stat status;
    if (!directory || ::fstat(directory.get(), &status) != 0)
        return refused(words(errno));
    if (status.st_dev != removal.device || status.st_ino != removal.inode)
        return refused("the folder is not the one that was chosen");

    std::string path = currentPath(directory.get());
    if (path.empty())
        path = paths::withoutTrailingSlashes(removal.root);
    const std::string_view relative = removal.relative;
    std::size_t start = 0;
    for (auto slash = relative.find('/'); slash != relative.npos;
         slash = relative.find('/', start)) {
        const std::string name(relative.substr(start, slash - start));
        FileDescriptor next(::openat(directory.get(), name.c_str(), placeFlags | O_NOFOLLOW));
        if (!next && errno == ENOENT)
            return {true, true, {}};
        if (!next)
            return refused(words(errno));
        directory = std::move(next);
        path += (path.ends_with('/') ? "" : "/") + name;
        start = slash + 1;
    }
    // A name above may have changed on the way down; the checks want the place as it is now.
    if (const std::string now = currentPath(directory.get()); !now.empty())
        path = now;
    const std::string name(relative.substr(start));
    return runIn(directory.get(), (path.ends_with('/') ? path : path + '/') + name, name);
}

Reply PathRemoval::runIn(int parent, const std::string &path, const std::string &name) const {
    if (std::string reason = refusalOf(parent, path, name); !reason.empty())
        return refused(std::move(reason));
    return runTool(parent, name);
}

std::string PathRemoval::refusalOf(int parent, const std::string &path,
                                   const std::string &name) const {
    if (componentCount(path) < 2)
        return "the path has fewer than two components";
    if (isOnKernelFileSystem(parent))
        return "the file system holds no files";
    const auto mounts = currentMounts();
    if (mounts.empty())
        return "the mount table cannot be read";
    if (holdsMountPoint(mounts, path))
        return words(EBUSY);
    struct stat status;
    const bool exists = ::fstatat(parent, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0;
    if (m_places.holds(path) || (exists && m_places.isOne(status.st_dev, status.st_ino)))
        return "the place is protected";
    if (isLockedByApt(path))
        return words(EBUSY);
    return {};
}

bool PathRemoval::isLockedByApt(const std::string &path) const {
    return std::any_of(
        m_places.aptArchives().begin(), m_places.aptArchives().end(),
        [&](const std::string &archives) {
            if (!paths::isSameOrBelow(path, archives))
                return false;
            const FileDescriptor file(
                ::open((archives + "/lock").c_str(), O_RDWR | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK));
            struct flock lock {};
            lock.l_type = F_WRLCK;
            lock.l_whence = SEEK_SET;
            return file && ::fcntl(file.get(), F_GETLK, &lock) == 0 && lock.l_type != F_UNLCK;
        });
}

} // namespace brightsweep::helper
