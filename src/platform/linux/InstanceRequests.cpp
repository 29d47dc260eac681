#include "platform/linux/InstanceRequests.h"

#include <utility>

namespace brightsweep {

void InstanceRequests::add(std::string token, std::function<void()> answered) {
    {
        const std::lock_guard lock(m_mutex);
        if (m_handler) {
            post(std::move(token), std::move(answered));
            return;
        }
        m_early.push_back(std::move(token));
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
    for (std::string &token : std::exchange(m_early, {}))
        post(std::move(token), [] {});
}

void InstanceRequests::post(std::string token, std::function<void()> answered) {
    m_queue->post([handler = m_handler, token = std::move(token), answered = std::move(answered)] {
        answered();
        (*handler)(token);
    });
}

} // namespace brightsweep
