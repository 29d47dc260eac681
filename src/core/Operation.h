#pragma once

#include <QObject>

#include <atomic>

namespace brightsweep {

/// One piece of work of a serial queue: main() runs once, on the queue's thread; cancel() may come
/// from any thread, also before. Notifications that it posts name no object.
class Operation : public QObject {
    Q_OBJECT

public:
    virtual void main() = 0;
    void cancel() { m_cancelled = true; }
    bool isCancelled() const { return m_cancelled; }

protected:
    const std::atomic<bool> &cancelledFlag() const { return m_cancelled; }

private:
    std::atomic<bool> m_cancelled{false};
};

} // namespace brightsweep
