#pragma once

#include "support/ChildProcess.h"

#include <sys/types.h>

#include <filesystem>
#include <string>
#include <vector>

namespace brightsweep::test {

/// A mount namespace for this process, with /dev, /run, /media and /boot of its own and, on demand,
/// a system bus, a device manager and a disks service in it. What a test mounts there is seen by
/// nobody else; what it attaches is detached at the end. Needs root; made once per process, before
/// its first thread.
class PrivateMachine {
public:
    static PrivateMachine &current();

    /// Starts the service, if it is not running, and waits until it answers.
    void startBus();
    void startDisks();
    /// The same with a program of the test's own in place of the disks service.
    void startDisks(const std::vector<const char *> &program);
    void stopDisks();
    void stopBus();
    /// What the disks service has logged.
    std::string wordsOfDisks() const;

    /// A loop device with a fresh file system. An ext4 has 64 MiB.
    std::string makeDisk(const std::string &label, const std::string &type = "ext4");
    /// A block device in memory, with a fresh ext4, that is no loop device; empty where the kernel
    /// has none.
    std::string makeMemoryDisk();
    /// Mounts a device, making the mount point.
    void mountDisk(const std::string &device, const std::filesystem::path &place,
                   const std::string &type = "ext4");
    bool isAttached(const std::string &device) const;

    /// Undoes what a test has left: mounts below /media and /boot, loop devices, images.
    void clear();

    ~PrivateMachine();

private:
    PrivateMachine();
    void stop(pid_t &process);

    std::filesystem::path m_images;
    std::vector<std::string> m_devices;
    std::string m_memoryDisk; ///< its number among its kind
    pid_t m_bus = -1;
    pid_t m_deviceManager = -1;
    pid_t m_disks = -1;
};

struct CommandResult {
    int status = 0;
    std::string output;
};

/// Runs a shell command; with its standard error in the output where it says so itself.
CommandResult shell(const std::string &command);

/// The text as one word for the shell.
std::string quoted(const std::string &text);

} // namespace brightsweep::test
