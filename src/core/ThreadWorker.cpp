#include "core/ThreadWorker.h"

#include "foundation/Log.h"

#include <exception>
#include <system_error>
#include <thread>

namespace brightsweep {

ThreadWorker::ThreadWorker(Work work, std::function<void()> didEnd)
    : m_work(std::move(work)), m_didEnd(std::move(didEnd)) {
    if (m_didEnd)
        m_queue = new CallQueue;
}

ThreadWorker::~ThreadWorker() {
    // Only a worker whose thread never started still has it.
    delete m_queue;
}

std::shared_ptr<ThreadWorker> ThreadWorker::start(Work work, std::function<void()> didEnd) {
    std::shared_ptr<ThreadWorker> worker(new ThreadWorker(std::move(work), std::move(didEnd)));
    try {
        std::thread([worker] { worker->run(); }).detach();
    } catch (const std::system_error &error) {
        NSLog("ThreadWorker could not start a thread: %@", error.code());
        return nullptr;
    }
    return worker;
}

std::shared_ptr<ThreadWorker> ThreadWorker::refuse(const std::string &target) {
    NSLog("\nThreadWorker reports: Target %@ does not respond to selector %@.", target, "(null)");
    return nullptr;
}

void ThreadWorker::run() {
    const bool ended = runPrimaryTask();
    std::unique_lock lock(m_mutex);
    m_workReturned = true;
    m_changed.notify_all();
    // Whatever happens to the queue happens on the starting thread, and abandon() may be first.
    if (m_queue && ended) {
        m_queue->post([self = shared_from_this()] { self->callEnd(); });
        m_changed.wait(lock, [this] { return m_endReturned || m_abandoned; });
    } else if (m_queue) {
        m_queue->post([self = shared_from_this()] { self->closeQueue(); });
    }
    lock.unlock();
    if (ended)
        NSLog("isRunning: %d, _endRunLoop: %d", 1, 1);
}

bool ThreadWorker::runPrimaryTask() {
    try {
        m_work(this);
        return true;
    } catch (const std::exception &error) {
        NSLog("ThreadWorker: the work ended with an exception: %@", error.what());
    } catch (...) {
        NSLog("ThreadWorker: the work ended with an unknown exception");
    }
    return false;
}

void ThreadWorker::callEnd() {
    {
        // An abandoned queue may still run what waits in it before it goes.
        const std::lock_guard lock(m_mutex);
        if (m_abandoned)
            return;
    }
    m_didEnd();
    closeQueue();
}

void ThreadWorker::closeQueue() {
    CallQueue *queue = nullptr;
    {
        const std::lock_guard lock(m_mutex);
        queue = std::exchange(m_queue, nullptr);
        m_endReturned = true;
    }
    m_changed.notify_all();
    // It may be running the very function that called this.
    if (queue)
        queue->deleteLater();
}

void ThreadWorker::abandon() {
    CallQueue *queue = nullptr;
    {
        std::unique_lock lock(m_mutex);
        m_abandoned = true;
        queue = std::exchange(m_queue, nullptr);
        m_changed.notify_all();
        m_changed.wait(lock, [this] { return m_workReturned; });
    }
    if (queue)
        queue->deleteLater();
}

} // namespace brightsweep
