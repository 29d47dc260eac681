#pragma once

#include "platform/linux/UDisks.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

namespace brightsweep {

/// Keeps what the disks service knows at hand, fetched on a thread of its own, so that nobody waits
/// for the bus. A service or a bus that has gone and come back is found at the next request; what
/// it said last stands meanwhile. All calls are safe from every thread.
class UDisksWatch {
public:
    /// `changed` is called on the own thread after each fetch that brought something.
    explicit UDisksWatch(std::function<void()> changed);
    ~UDisksWatch();

    /// Asks for what is not known yet: after a failure, for another set of mounts, after a while.
    void request(std::uint64_t mounts);
    /// Null before the first answer.
    std::shared_ptr<const UDisksSnapshot> snapshot() const;
    /// Waits until the last request has been answered or has failed, or until the time has come.
    void wait(std::chrono::steady_clock::time_point until);

private:
    void run();

    const std::function<void()> m_changed;
    mutable std::mutex m_mutex;
    std::condition_variable m_wake;
    std::condition_variable m_answer;
    std::shared_ptr<const UDisksSnapshot> m_snapshot;
    std::uint64_t m_mounts = 0;
    std::chrono::steady_clock::time_point m_fetched;
    bool m_wanted = false;
    bool m_busy = false;
    bool m_valid = false; ///< the last fetch succeeded
    std::atomic<bool> m_stop{false};
    std::thread m_thread;
};

} // namespace brightsweep
