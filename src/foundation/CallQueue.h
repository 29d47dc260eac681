#pragma once

#include <QObject>

#include <functional>
#include <mutex>
#include <vector>

namespace brightsweep {

/// Runs functions on the thread that made it, through that thread's event loop, in the order in
/// which they were handed in. They wait under a mutex of its own, so that ThreadSanitizer, which
/// does not see into Qt's event queue, sees the hand-over.
///
/// post() is safe from every thread while the queue lives; the queue is destroyed on its own
/// thread, and functions not yet run are dropped with it.
class CallQueue : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    void post(std::function<void()> function);

private:
    Q_INVOKABLE void run();

    std::mutex m_mutex;
    std::vector<std::function<void()>> m_waiting;
};

} // namespace brightsweep
