#pragma once

#include <chrono>
#include <cstdint>
#include <functional>

namespace brightsweep {

/// One-shot timers of the main thread's controllers, behind an interface so that a test can let
/// time pass. Every call is made, and every function is called, on one thread.
class Clock {
public:
    /// Names a call to come; 0 names none.
    using Handle = std::uint64_t;

    virtual ~Clock();

    virtual Handle callAfter(std::chrono::milliseconds delay, std::function<void()> function) = 0;
    /// Nothing happens for a call that has been made or cancelled.
    virtual void cancel(Handle handle) = 0;

    /// The clock of the event loop of the thread that asks first; never freed.
    static Clock &eventLoop();
};

} // namespace brightsweep
