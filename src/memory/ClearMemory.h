#pragma once

#include "memory/getMemoryInfo.h"

#include <sys/types.h>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace brightsweep {

/// Reads the memory's figures and starts the release of inactive memory, a child process that is
/// watched by reading: the first reading after its end collects it. Two objects share nothing. One
/// thread; no call waits. An object that goes leaves its child running.
class ClearMemory {
public:
    /// Looks for "fr" with a value behind it at every place of the arguments. Where it stands, the
    /// value is logged and the process's exit status, 0, is returned; no memory is touched. -1
    /// where it does not stand, or stands last.
    static int freeMemory(int argc, const char *const *argv);
    /// The value that freeMemory() would log; null where it would return -1.
    static const char *valueToFree(int argc, const char *const *argv);

    /// Reads into `meminfo` and the pointer, if there is one, and collects a finished release. 0.
    int getMemoryInfo(MemoryInfo *info);
    /// 0 when a release was started, 1 while one is running, -1 where none can be started.
    int clearMemory();
    bool isRuning();
    /// A release was started and its end is not collected yet.
    bool isUncollected() const { return isRunFree; }
    /// Asks a running release to end; it counts as running until it is collected.
    void stop();

    /// The exit status of the release collected last, 128 and more for one that was ended by a
    /// signal. It is told, and changes nothing.
    std::optional<int> terminationStatus() const { return m_status; }
    /// The last attempt released nothing: its tool could not be started, failed, or is not there,
    /// so that this program stood in for it. False while it runs.
    bool couldDoNothing() const { return !isRunFree && m_didNothing; }

    /// What a release starts: the system's own tool, else that of this program, else this program
    /// with "fr" and the number of free and inactive bytes, which frees nothing.
    std::vector<std::string> releaseCommand() const;

private:
    bool taskRuns();

    MemoryInfo meminfo;
    pid_t task = 0;
    bool isRunFree = false;
    bool m_ended = false; // the child has been waited for
    bool m_didNothing = false;
    std::optional<int> m_status;
    int m_endStatus = 0;
};

/// Where the program's own release tool lies: beside the program, else where it was installed.
std::filesystem::path releaseToolPath();

} // namespace brightsweep
