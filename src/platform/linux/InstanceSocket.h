#pragma once

#include "foundation/FileDescriptor.h"
#include "platform/SingleInstance.h"
#include "platform/linux/InstanceRequests.h"
#include "platform/linux/WakePipe.h"

#include <chrono>
#include <thread>

namespace brightsweep {

/// One instance without a bus: a lock in the user's runtime folder, held for life, says who is the
/// first, and a socket beside it takes the wishes of later starts. What a killed process leaves
/// there stands in nobody's way: its lock is gone with it, and the socket belongs to the lock.
class InstanceSocket {
public:
    explicit InstanceSocket(InstanceRequests &requests) : m_requests(requests) {}
    ~InstanceSocket();

    /// Blocks until then at most.
    InstanceOutcome claim(bool activate, const InstanceRequest &request,
                          std::chrono::steady_clock::time_point until);

private:
    bool listen(const FileDescriptor &folder);
    void serve();
    void hear(FileDescriptor caller);
    static bool ask(const FileDescriptor &folder, const InstanceRequest &request,
                    std::chrono::steady_clock::time_point until);

    InstanceRequests &m_requests;
    FileDescriptor m_lock;
    FileDescriptor m_socket;
    WakePipe m_stop;
    std::thread m_thread;
};

} // namespace brightsweep
