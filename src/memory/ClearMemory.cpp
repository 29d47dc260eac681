#include "memory/ClearMemory.h"

#include "foundation/Log.h"
#include "foundation/Paths.h"
#include "linux/ProcessStart.h"
#include "platform/Platform.h"
#include "platform/StandardDirectories.h"

#include <QCoreApplication>
#include <QFile>

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <string_view>

namespace brightsweep {

namespace {

constexpr char systemTool[] = "/usr/bin/purge";
constexpr char ownTool[] = "purge";

std::string programPath() {
    const QByteArray bytes = QFile::encodeName(QCoreApplication::applicationFilePath());
    return {bytes.constData(), std::size_t(bytes.size())};
}

} // namespace

std::filesystem::path releaseToolPath() {
    const auto beside = paths::join(paths::parent(programPath()), ownTool);
    if (::access(beside.c_str(), X_OK) == 0)
        return beside;
    return BRIGHTSWEEP_PURGE_PATH;
}

int ClearMemory::freeMemory(int argc, const char *const *argv) {
    const char *const value = valueToFree(argc, argv);
    if (!value)
        return -1;
    NSLog("freeMemoy size=%s", value);
    return 0;
}

const char *ClearMemory::valueToFree(int argc, const char *const *argv) {
    for (int i = 1; i + 1 < argc; ++i) {
        if (argv[i] == std::string_view("fr"))
            return argv[i + 1];
    }
    return nullptr;
}

int ClearMemory::getMemoryInfo(MemoryInfo *info) {
    // A name that cannot be read leaves its field; the others count.
    brightsweep::getMemoryInfo(&meminfo);
    if (info)
        *info = meminfo;
    if (isRunFree && !taskRuns()) {
        NSLog("Task finished. status = %d", m_endStatus);
        m_status = m_endStatus;
        m_didNothing = m_didNothing || m_endStatus != 0;
        isRunFree = false;
        task = 0;
    }
    return 0;
}

int ClearMemory::clearMemory() {
    if (isRunFree) {
        getMemoryInfo(nullptr);
        if (isRunFree)
            return 1;
    }
    const std::vector<std::string> command = releaseCommand();
    // What the tool says goes where this process's own troubles go, never into its output.
    const auto [process, error] = startProcess({.arguments = command, .output = STDERR_FILENO});
    const bool isStandIn = command.size() > 1;
    m_didNothing = error != 0 || isStandIn;
    if (error != 0) {
        NSLog("%@ cannot be started: %@", command[0],
              std::error_code(error, std::generic_category()));
        return -1;
    }
    task = process;
    m_ended = false;
    isRunFree = true;
    return 0;
}

bool ClearMemory::isRuning() {
    return isRunFree && taskRuns();
}

void ClearMemory::stop() {
    if (isRunFree && taskRuns())
        ::kill(task, SIGTERM);
}

std::vector<std::string> ClearMemory::releaseCommand() const {
    const auto system = Platform::current().directories->systemPath(systemTool);
    if (::access(system.c_str(), F_OK) == 0)
        return {system.native()};
    const auto own = releaseToolPath();
    NSLog("purge = %@", own);
    if (::access(own.c_str(), X_OK) == 0)
        return {own.native()};
    return {programPath(), "fr", std::to_string(meminfo.freeMem + meminfo.inactiveMem)};
}

bool ClearMemory::taskRuns() {
    if (m_ended)
        return false;
    int status = 0;
    const pid_t waited = ::waitpid(task, &status, WNOHANG);
    if (waited == 0 || (waited < 0 && errno == EINTR))
        return true;
    m_ended = true;
    m_endStatus = waited == task ? exitStatusOf(status) : 0;
    return false;
}

} // namespace brightsweep
