#include "platform/linux/MountWatch.h"

#include "foundation/Log.h"

#include <fcntl.h>
#include <poll.h>

#include <cerrno>
#include <system_error>

namespace brightsweep {

MountWatch::MountWatch(std::function<void()> changed)
    : m_changed(std::move(changed)), m_table(::open("/proc/self/mountinfo", O_RDONLY | O_CLOEXEC)) {
    if (!m_table) {
        NSLog("Mounts are not watched: %@", std::error_code(errno, std::generic_category()));
        return;
    }
    try {
        m_thread = std::thread(&MountWatch::run, this);
    } catch (const std::system_error &error) {
        NSLog("Mounts are not watched: %@", error.code());
    }
}

MountWatch::~MountWatch() {
    m_stop = true;
    m_wake.wake();
    if (m_thread.joinable())
        m_thread.join();
}

void MountWatch::run() {
    for (;;) {
        pollfd waiting[] = {{m_table.get(), POLLPRI, 0}, {m_wake.descriptor(), POLLIN, 0}};
        ::poll(waiting, 2, -1);
        if (m_stop)
            return;
        if (waiting[0].revents != 0)
            m_changed();
    }
}

} // namespace brightsweep
