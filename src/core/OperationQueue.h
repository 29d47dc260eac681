#pragma once

#include "core/Operation.h"

#include <atomic>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

namespace brightsweep {

class ThreadWorker;

/// Runs operations one after the other on a thread beside that of its owner. The thread is there
/// only while there is something to run.
///
/// Belongs to a thread with an event loop, on which operations are added and the idle handler is
/// called. Destroying it cancels what it holds and waits for the operation under way.
class OperationQueue {
public:
    OperationQueue() = default;
    ~OperationQueue();
    OperationQueue(const OperationQueue &) = delete;
    OperationQueue &operator=(const OperationQueue &) = delete;

    void addOperation(std::shared_ptr<Operation> operation);
    /// Cancels the operation under way and those that wait, which still run to say so. Any thread.
    void cancelAllOperations();
    /// True once the last operation has ended, be it by an exception, or because no thread could be
    /// had for it: then without a word. On the owner's thread.
    bool isIdle() const { return !m_worker; }
    /// True on the thread that runs this queue's operations: what is posted there is theirs.
    bool isOwnThread() const { return m_thread == std::this_thread::get_id(); }
    void setIdleHandler(std::function<void()> handler) { m_idleHandler = std::move(handler); }

private:
    void start();
    void work(std::nullptr_t argument);
    void ended();
    std::shared_ptr<Operation> next();

    std::shared_ptr<ThreadWorker> m_worker;
    std::function<void()> m_idleHandler;
    std::atomic<std::thread::id> m_thread;

    std::mutex m_mutex; // guards what follows
    std::deque<std::shared_ptr<Operation>> m_waiting;
    std::shared_ptr<Operation> m_running;
};

} // namespace brightsweep
