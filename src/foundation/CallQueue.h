#pragma once

#include <QObject>

#include <functional>
#include <memory>

namespace brightsweep {

/// Runs functions on the thread that made it, through that thread's event loop, in the order in
/// which they were handed in. It wakes the loop through a pipe, so that what one thread wrote
/// before post() is visible to the function by plain system-call ordering.
///
/// post() is safe from every thread while the queue lives; the queue is destroyed on its own
/// thread, and functions not yet run are dropped with it.
class CallQueue : public QObject {
    Q_OBJECT

public:
    explicit CallQueue(QObject *parent = nullptr);
    ~CallQueue() override;

    void post(std::function<void()> function);

private:
    void run();

    struct State;
    std::unique_ptr<State> m_state;
};

} // namespace brightsweep
