#include "core/ThreadWorker.h"

#include "foundation/Log.h"

#include <chrono>
#include <exception>
#include <new>
#include <thread>

namespace brightsweep {

namespace {

constexpr std::chrono::milliseconds pauseWithoutMemory(10);

std::atomic<bool> runsWithoutThreads{false};

} // namespace

ThreadWorker::ThreadWorker(Work work, std::function<void()> didEnd)
    : m_work(std::move(work)), m_didEnd(std::move(didEnd)) {
    if (m_didEnd)
        m_queue = new CallQueue;
}

ThreadWorker::~ThreadWorker() {
    // Only a worker whose thread never started still has it.
    delete m_queue;
}

void ThreadWorker::setRunsWithoutThreads(bool runs) {
    runsWithoutThreads = runs;
}

std::shared_ptr<ThreadWorker> ThreadWorker::start(Work work, std::function<void()> didEnd) {
    std::shared_ptr<ThreadWorker> worker(new ThreadWorker(std::move(work), std::move(didEnd)));
    try {
        std::thread([worker] { worker->run(); }).detach();
    } catch (const std::exception &error) {
        NSLog("ThreadWorker could not start a thread: %@", error.what());
        worker->doWithoutThread(std::current_exception());
    }
    return worker;
}

std::shared_ptr<ThreadWorker> ThreadWorker::refuse(const std::string &target) {
    NSLog("\nThreadWorker reports: Target %@ does not respond to selector %@.", target, "(null)");
    return nullptr;
}

void ThreadWorker::run() {
    runPrimaryTask();
    std::unique_lock lock(m_mutex);
    m_workReturned = true;
    m_changed.notify_all();
    // Whatever happens to the queue happens on the starting thread, and abandon() may be first.
    if (m_queue) {
        postToQueue(lock, [self = shared_from_this()] { self->callEnd(); });
        m_changed.wait(lock, [this] { return m_endReturned || m_abandoned; });
    }
    lock.unlock();
    NSLog("isRunning: %d, _endRunLoop: %d", 1, 1);
}

// The end call comes in every case, so the memory for it is waited for.
void ThreadWorker::postToQueue(std::unique_lock<std::mutex> &lock,
                               const std::function<void()> &function) {
    while (m_queue) {
        try {
            m_queue->post(function);
            return;
        } catch (const std::bad_alloc &) {
            lock.unlock();
            std::this_thread::sleep_for(pauseWithoutMemory);
            lock.lock();
        }
    }
}

void ThreadWorker::runPrimaryTask() {
    try {
        m_work(this);
    } catch (const std::exception &error) {
        m_failure = std::current_exception();
        NSLog("ThreadWorker: the work ended with an exception: %@", error.what());
    } catch (...) {
        m_failure = std::current_exception();
        NSLog("ThreadWorker: the work ended with an unknown exception");
    }
}

// All on the starting thread, so that nothing has to be waited for.
void ThreadWorker::doWithoutThread(std::exception_ptr reason) {
    m_workReturned = true;
    if (!m_queue)
        m_queue = new CallQueue;
    m_queue->post([self = shared_from_this(), reason] {
        if (self->m_abandoned)
            return;
        if (runsWithoutThreads)
            self->runPrimaryTask();
        else
            self->m_failure = reason;
        self->callEnd();
    });
}

void ThreadWorker::callEnd() {
    {
        // An abandoned queue may still run what waits in it before it goes.
        const std::lock_guard lock(m_mutex);
        if (m_abandoned)
            return;
    }
    if (m_didEnd)
        m_didEnd();
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
