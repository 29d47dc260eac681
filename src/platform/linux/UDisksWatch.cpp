#include "platform/linux/UDisksWatch.h"

#include <utility>

namespace brightsweep {

namespace {

// Facts change without a mount too: a card reader that gets a medium, a drive that is renamed.
constexpr std::chrono::seconds renewal(10);

} // namespace

UDisksWatch::UDisksWatch(std::function<void()> changed) : m_changed(std::move(changed)) {}

UDisksWatch::~UDisksWatch() {
    {
        const std::lock_guard lock(m_mutex);
        m_stop = true;
    }
    m_wake.notify_all();
    if (m_thread.joinable())
        m_thread.join();
}

void UDisksWatch::request(std::uint64_t mounts) {
    const std::lock_guard lock(m_mutex);
    const bool old = std::chrono::steady_clock::now() - m_fetched >= renewal;
    if (m_valid && m_mounts == mounts && !old)
        return;
    m_mounts = mounts;
    m_wanted = true;
    if (!m_thread.joinable())
        m_thread = std::thread(&UDisksWatch::run, this);
    m_wake.notify_all();
}

std::shared_ptr<const UDisksSnapshot> UDisksWatch::snapshot() const {
    const std::lock_guard lock(m_mutex);
    return m_snapshot;
}

void UDisksWatch::wait(std::chrono::steady_clock::time_point until) {
    std::unique_lock lock(m_mutex);
    m_answer.wait_until(lock, until, [this] { return !m_wanted && !m_busy; });
}

void UDisksWatch::run() {
    std::unique_ptr<UDisks> service;
    std::unique_lock lock(m_mutex);
    for (;;) {
        m_wake.wait(lock, [this] { return m_wanted || m_stop; });
        if (m_stop)
            return;
        m_wanted = false;
        m_busy = true;
        lock.unlock();
        if (!service || !service->isConnected())
            service = std::make_unique<UDisks>();
        auto snapshot = service->isConnected() ? service->snapshot(m_stop) : std::nullopt;
        if (!snapshot)
            service.reset();
        lock.lock();
        m_valid = snapshot.has_value();
        m_fetched = std::chrono::steady_clock::now();
        if (snapshot) {
            m_snapshot = std::make_shared<const UDisksSnapshot>(*std::move(snapshot));
            lock.unlock();
            m_changed();
            lock.lock();
        }
        m_busy = false;
        m_answer.notify_all();
    }
}

} // namespace brightsweep
