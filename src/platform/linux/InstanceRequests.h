#pragma once

#include "foundation/CallQueue.h"
#include "platform/SingleInstance.h"

#include <functional>
#include <memory>
#include <mutex>
#include <vector>

namespace brightsweep {

/// The wishes of later starts that this process show itself, on their way from whichever thread
/// hears them to the main thread.
class InstanceRequests {
public:
    using Handler = std::function<void(const InstanceRequest &)>;

    /// Any thread. `answered` tells the later start that its wish is in good hands: at once while
    /// this process is still starting, afterwards by the main thread, so that one that hangs does
    /// not answer.
    void add(InstanceRequest request, std::function<void()> answered);
    /// Main thread.
    void setHandler(Handler handler);

private:
    void post(InstanceRequest request, std::function<void()> answered);

    std::mutex m_mutex;
    std::vector<InstanceRequest> m_early; ///< came before there was a handler
    std::unique_ptr<CallQueue> m_queue;
    std::shared_ptr<const Handler> m_handler;
};

} // namespace brightsweep
