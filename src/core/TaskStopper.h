#pragma once

#include <atomic>

namespace brightsweep {

/// The program-wide flag that stops the walks of the disk usage's list mode from deep inside, where
/// no worker is at hand. One request reaches every walk in progress, and a new walk clears it for
/// all: only one is meant to run at a time.
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
