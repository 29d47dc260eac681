#include "foundation/CallQueue.h"

#include "foundation/FileDescriptor.h"

#include <QSocketNotifier>

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <mutex>
#include <system_error>
#include <vector>

namespace brightsweep {

struct CallQueue::State {
    FileDescriptor readEnd;
    FileDescriptor writeEnd;
    std::mutex mutex;
    std::vector<std::function<void()>> waiting;
};

CallQueue::CallQueue(QObject *parent) : QObject(parent), m_state(std::make_unique<State>()) {
    int ends[2];
    if (::pipe(ends) != 0)
        throw std::system_error(errno, std::generic_category(), "pipe");
    m_state->readEnd = FileDescriptor(ends[0]);
    m_state->writeEnd = FileDescriptor(ends[1]);
    for (const int end : ends) {
        ::fcntl(end, F_SETFD, FD_CLOEXEC);
        ::fcntl(end, F_SETFL, O_NONBLOCK);
    }
    auto *notifier = new QSocketNotifier(m_state->readEnd.get(), QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, &CallQueue::run);
}

CallQueue::~CallQueue() = default;

void CallQueue::post(std::function<void()> function) {
    const std::lock_guard lock(m_state->mutex);
    m_state->waiting.push_back(std::move(function));
    // One byte wakes the loop for all that waits; a full pipe is awake already.
    if (m_state->waiting.size() == 1) [[maybe_unused]]
        const auto written = ::write(m_state->writeEnd.get(), "", 1);
}

void CallQueue::run() {
    char discarded[64];
    while (::read(m_state->readEnd.get(), discarded, sizeof discarded) > 0) {
    }
    std::vector<std::function<void()>> functions;
    {
        const std::lock_guard lock(m_state->mutex);
        functions.swap(m_state->waiting);
    }
    for (const auto &function : functions)
        function();
}

} // namespace brightsweep
