#pragma once

#include "platform/linux/UDisks.h"
#include "platform/linux/UDisksListener.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

namespace brightsweep {

/// Keeps what UDisks2 knows at hand, fetched on a thread of its own, so that nobody waits
/// for the bus. A service or a bus that has gone and come back is found at the next request; what
/// it said last stands meanwhile. All calls but listen() are safe from every thread.
class UDisksWatch {
public:
    /// `changed` is called on the own thread after each fetch that brought something.
    explicit UDisksWatch(std::function<void()> changed);
    ~UDisksWatch();

    /// With a listener on the calling thread, which needs an event loop, a request sends nothing
    /// while nothing has changed; without, it asks again after a while. Taken back on that thread.
    void listen(bool listens);
    /// Asks for what is not known yet: after a failure, for another set of mounts, after a change.
    void request(std::uint64_t mounts);
    /// Null before the first answer.
    std::shared_ptr<const UDisksSnapshot> snapshot() const;
    /// Waits until the last request has been answered or has failed, or until the time has come.
    void wait(std::chrono::steady_clock::time_point until);

private:
    /// What the last fetch ended with.
    enum class Outcome { NoBus, SilentBus, NotOffered, NoAnswer, Answer };

    bool isDue() const;
    void follow();
    void hear();
    void run();

    const std::function<void()> m_changed;
    mutable std::mutex m_mutex;
    std::condition_variable m_wake;
    std::condition_variable m_answer;
    std::unique_ptr<UDisksListener> m_listener;
    QString m_connection; ///< the name of the one in use; empty without
    std::shared_ptr<const UDisksSnapshot> m_snapshot;
    std::uint64_t m_mounts = 0;
    std::chrono::steady_clock::time_point m_fetched;
    Outcome m_outcome = Outcome::NoBus;
    bool m_listening = false; ///< changes on the connection are heard
    bool m_stale = false;     ///< something has changed since the last fetch began
    bool m_wanted = false;
    bool m_busy = false;
    std::atomic<bool> m_stop{false};
    std::thread m_thread;
};

} // namespace brightsweep
