#pragma once

#include "platform/SingleInstance.h"

#include <functional>
#include <optional>
#include <string>

namespace brightsweep {

/// The one running program as a process: a second start is passed to it, also while it launches;
/// it ends without destructors, or in favour of a fresh start in its place. Main thread.
class RunningInstance {
public:
    struct Hooks {
        /// Shows the window, as a second start asks for it.
        std::function<void(const InstanceRequest &)> reopen;
        /// Takes away what is on show.
        std::function<void()> leave;
        std::function<void(int)> exit; ///< else std::_Exit
        std::function<void()> restart; ///< else the program takes its own place
    };

    explicit RunningInstance(Hooks hooks) : m_hooks(std::move(hooks)) {}
    ~RunningInstance();
    RunningInstance(const RunningInstance &) = delete;
    RunningInstance &operator=(const RunningInstance &) = delete;

    /// From now on second starts are heard; until launched() they wait.
    void listen();
    void launched();
    void handleReopenAppEvent(const InstanceRequest &request);

    /// Ends what removes something, gives rights up, writes settings and log, and ends the process
    /// with status 1.
    void quit();
    /// The same, and starts the program in its place, with its window shown.
    void restart();

private:
    void takeLeave();

    const Hooks m_hooks;
    bool m_launched = false;
    std::optional<InstanceRequest> m_reopen;
};

} // namespace brightsweep
