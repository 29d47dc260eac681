#include "linux/MountTableReader.h"

#include <fcntl.h>
#include <poll.h>

namespace brightsweep {

std::optional<std::vector<Mount>> MountTableReader::changedMounts() {
    if (!m_table) {
        // The kernel counts the changes from here on, so that none falls between.
        m_table = FileDescriptor(::open("/proc/thread-self/mountinfo", O_RDONLY | O_CLOEXEC));
        return currentMounts();
    }
    pollfd table = {m_table.get(), POLLPRI, 0};
    if (::poll(&table, 1, 0) == 0)
        return std::nullopt;
    return currentMounts();
}

} // namespace brightsweep
