#include "platform/linux/WakePipe.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace brightsweep {

WakePipe::WakePipe() {
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0)
        throw std::system_error(errno, std::generic_category(), "pipe");
    m_readEnd = FileDescriptor(ends[0]);
    m_writeEnd = FileDescriptor(ends[1]);
}

void WakePipe::wake() {
    // A full pipe is awake already.
    [[maybe_unused]] const auto written = ::write(m_writeEnd.get(), "", 1);
}

void WakePipe::drain() {
    char discarded[64];
    while (::read(m_readEnd.get(), discarded, sizeof discarded) > 0) {
    }
}

} // namespace brightsweep
