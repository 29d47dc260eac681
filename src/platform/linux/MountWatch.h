#pragma once

#include "foundation/FileDescriptor.h"
#include "platform/linux/WakePipe.h"

#include <atomic>
#include <functional>
#include <thread>

namespace brightsweep {

/// Tells of changes of this process's mount table, from the moment of its making until it goes.
class MountWatch {
public:
    /// `changed` is called on an own thread, once for changes that come together.
    explicit MountWatch(std::function<void()> changed);
    ~MountWatch();

private:
    void run();

    const std::function<void()> m_changed;
    FileDescriptor m_table;
    WakePipe m_wake;
    std::atomic<bool> m_stop{false};
    std::thread m_thread;
};

} // namespace brightsweep
