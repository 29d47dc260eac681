#include "core/OperationQueue.h"

#include "core/ThreadWorker.h"

#include <utility>

namespace brightsweep {

OperationQueue::~OperationQueue() {
    cancelAllOperations();
    if (m_worker)
        m_worker->abandon();
}

void OperationQueue::addOperation(std::shared_ptr<Operation> operation) {
    {
        const std::lock_guard lock(m_mutex);
        m_waiting.push_back(std::move(operation));
    }
    if (!m_worker)
        start();
}

void OperationQueue::start() {
    m_worker = ThreadWorker::workOn(this, &OperationQueue::work, nullptr, &OperationQueue::ended);
}

void OperationQueue::cancelAllOperations() {
    const std::lock_guard lock(m_mutex);
    for (const auto &operation : m_waiting)
        operation->cancel();
    if (m_running)
        m_running->cancel();
}

std::shared_ptr<Operation> OperationQueue::next() {
    const std::lock_guard lock(m_mutex);
    m_running.reset();
    if (!m_waiting.empty()) {
        m_running = std::move(m_waiting.front());
        m_waiting.pop_front();
    }
    return m_running;
}

void OperationQueue::work(std::nullptr_t) {
    m_thread = std::this_thread::get_id();
    while (const auto operation = next())
        operation->main();
}

void OperationQueue::ended() {
    m_thread = std::thread::id();
    const bool failed = std::exchange(m_worker, nullptr)->failure() != nullptr;
    bool more = false;
    {
        // One that came between the last look and the end.
        const std::lock_guard lock(m_mutex);
        // What follows an operation that failed cannot go by what it did.
        if (failed) {
            m_running.reset();
            m_waiting.clear();
        }
        more = !m_waiting.empty();
    }
    if (more)
        start();
    else if (m_idleHandler)
        m_idleHandler();
}

} // namespace brightsweep
