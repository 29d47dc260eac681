#include "platform/linux/InstanceRequests.h"

#include <utility>

namespace brightsweep {

void InstanceRequests::add(InstanceRequest request, std::function<void()> answered) {
    {
        const std::lock_guard lock(m_mutex);
        if (m_handler) {
            post(std::move(request), std::move(answered));
            return;
        }
        m_early.push_back(std::move(request));
    }
    answered();
}

void InstanceRequests::setHandler(Handler handler) {
    const std::lock_guard lock(m_mutex);
    m_handler = handler ? std::make_shared<const Handler>(std::move(handler)) : nullptr;
    if (!m_handler)
        return;
    if (!m_queue)
        m_queue = std::make_unique<CallQueue>();
    for (InstanceRequest &request : std::exchange(m_early, {}))
        post(std::move(request), [] {});
}

void InstanceRequests::post(InstanceRequest request, std::function<void()> answered) {
    m_queue->post(
        [handler = m_handler, request = std::move(request), answered = std::move(answered)] {
            answered();
            (*handler)(request);
        });
}

} // namespace brightsweep
