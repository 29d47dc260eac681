#include "foundation/CallQueue.h"

namespace brightsweep {

void CallQueue::post(std::function<void()> function) {
    const std::lock_guard lock(m_mutex);
    m_waiting.push_back(std::move(function));
    // By name: the overload for functors allocates an object that Qt frees where ThreadSanitizer
    // does not see it. One queued call runs all that waits.
    if (m_waiting.size() == 1)
        QMetaObject::invokeMethod(this, "run", Qt::QueuedConnection);
}

void CallQueue::run() {
    std::vector<std::function<void()>> functions;
    {
        const std::lock_guard lock(m_mutex);
        functions.swap(m_waiting);
    }
    for (const auto &function : functions)
        function();
}

} // namespace brightsweep
