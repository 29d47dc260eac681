#include "platform/linux/UDisksWatch.h"

#include "foundation/Log.h"
#include "platform/linux/BusProbe.h"

#include <system_error>
#include <utility>

namespace brightsweep {

namespace {

// Facts change without a mount too: a card reader that gets a medium, a drive that is renamed.
// Without a listener that is found out by asking, and a service that hangs is asked again.
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

void UDisksWatch::listen(bool listens) {
    auto listener = listens
                        ? std::make_unique<UDisksListener>([this] { follow(); }, [this] { hear(); })
                        : nullptr;
    const std::lock_guard lock(m_mutex);
    m_listening = false;
    m_listener.swap(listener);
    if (m_listener && !m_connection.isEmpty())
        m_listener->follow(m_connection);
}

void UDisksWatch::follow() {
    const std::lock_guard lock(m_mutex);
    m_listening = true;
    // What changed before is fetched too.
    m_stale = true;
}

void UDisksWatch::hear() {
    const std::lock_guard lock(m_mutex);
    m_stale = true;
}

bool UDisksWatch::isDue() const {
    if (m_wanted || m_busy)
        return m_stale;
    const bool old = std::chrono::steady_clock::now() - m_fetched >= renewal;
    switch (m_outcome) {
    case Outcome::NoBus:
        return busListens(systemBusAddress());
    case Outcome::SilentBus:
        return old;
    case Outcome::NotOffered:
        return m_stale || !m_listening;
    case Outcome::NoAnswer:
        return m_stale || old;
    case Outcome::Answer:
        break;
    }
    return m_stale || (old && !m_listening);
}

void UDisksWatch::request(std::uint64_t mounts) {
    const std::lock_guard lock(m_mutex);
    const bool other =
        m_mounts != mounts && m_outcome != Outcome::NoBus && m_outcome != Outcome::SilentBus;
    if (!other && !isDue())
        return;
    try {
        if (!m_thread.joinable())
            m_thread = std::thread(&UDisksWatch::run, this);
    } catch (const std::system_error &error) {
        NSLog("The disks service is not asked: %@", error.code());
        return;
    }
    m_mounts = mounts;
    m_wanted = true;
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
        m_stale = false;
        lock.unlock();
        const bool renewed = !service || !service->isConnected();
        if (renewed)
            service = std::make_unique<UDisks>();
        const bool connected = service->isConnected();
        if (connected && renewed) {
            lock.lock();
            m_connection = service->connectionName();
            m_listening = false;
            if (m_listener)
                m_listener->follow(m_connection);
            lock.unlock();
        }
        auto snapshot = connected ? service->snapshot(m_stop) : std::nullopt;
        lock.lock();
        const bool isSilent = service->busWasSilent();
        if (!service->isConnected()) {
            service.reset();
            m_connection.clear();
            m_listening = false;
        }
        m_outcome = snapshot               ? Outcome::Answer
                    : isSilent             ? Outcome::SilentBus
                    : !service             ? Outcome::NoBus
                    : service->isOffered() ? Outcome::NoAnswer
                                           : Outcome::NotOffered;
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
