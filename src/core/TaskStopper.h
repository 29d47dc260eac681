#pragma once

#include <atomic>

namespace brightsweep {

/// A flag that stops the walks of the disk usage's list mode from deep inside, where no worker is
/// at hand. The shared one is the program's: a request reaches every walk in progress that goes by
/// it, the sizes of a clean's scan among them. A scan that runs beside others has one of its own.
class TaskStopper {
public:
    static TaskStopper &sharedTaskStopper();

    void setStopFlags(bool stop) { bIsStopTask = stop; }
    bool getStopFlags() const { return bIsStopTask; }
    /// For calls that poll a flag of their caller's.
    const std::atomic<bool> &flag() const { return bIsStopTask; }

private:
    std::atomic<bool> bIsStopTask{false};
};

} // namespace brightsweep
