#include "app/RefreshLoop.h"

#include "foundation/Log.h"

#include <system_error>

namespace brightsweep {

RefreshLoop::RefreshLoop(std::chrono::milliseconds interval, std::function<void()> tick)
    : m_interval(interval), m_tick(std::move(tick)) {
    try {
        m_thread = std::thread([this] { run(); });
    } catch (const std::system_error &error) {
        NSLog("Nothing is refreshed by itself: %@", error.code());
    }
}

RefreshLoop::~RefreshLoop() {
    {
        const std::lock_guard lock(m_mutex);
        m_stopped = true;
    }
    m_changed.notify_all();
    if (m_thread.joinable())
        m_thread.join();
}

void RefreshLoop::run() {
    using SteadyClock = std::chrono::steady_clock;
    std::unique_lock lock(m_mutex);
    auto next = SteadyClock::now() + m_interval;
    while (!m_changed.wait_until(lock, next, [this] { return m_stopped; })) {
        runOnMainThread(lock);
        const auto now = SteadyClock::now();
        while (next <= now)
            next += m_interval;
    }
}

void RefreshLoop::runOnMainThread(std::unique_lock<std::mutex> &lock) {
    m_tickRuns = true;
    lock.unlock();
    m_queue.post([this] {
        m_tick();
        {
            const std::lock_guard done(m_mutex);
            m_tickRuns = false;
        }
        m_changed.notify_all();
    });
    lock.lock();
    m_changed.wait(lock, [this] { return !m_tickRuns || m_stopped; });
}

} // namespace brightsweep
