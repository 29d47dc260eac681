#pragma once

#include "foundation/CallQueue.h"

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

namespace brightsweep {

/// The program's main loop: a thread that has a function called on the thread that made this, time
/// after time, and waits for each call to return, so that two never overlap. Calls that could not
/// be made in time are left out. Destroyed on the thread that made it, which no call in waiting
/// can hold up.
class RefreshLoop {
public:
    RefreshLoop(std::chrono::milliseconds interval, std::function<void()> tick);
    ~RefreshLoop();
    RefreshLoop(const RefreshLoop &) = delete;
    RefreshLoop &operator=(const RefreshLoop &) = delete;

private:
    void run();
    void runOnMainThread(std::unique_lock<std::mutex> &lock);

    const std::chrono::milliseconds m_interval;
    const std::function<void()> m_tick;
    CallQueue m_queue;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_stopped = false;
    bool m_tickRuns = false;
    std::thread m_thread;
};

} // namespace brightsweep
