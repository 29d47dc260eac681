#pragma once

#include "cli/Command.h"

#include <functional>
#include <string>

namespace brightsweep::cli {

/// What a command has an engine do: the work itself, the engine's own stop, and what to show of it
/// meanwhile.
struct Work {
    std::function<void()> run; ///< on a thread of its own
    std::function<void()> stop;
    std::function<std::string()> progress;
};

/// Runs it, with an event loop on the calling thread, which shows the progress and hands Ctrl-C on.
/// Returns when the work has; its exception is thrown on.
void runWork(const Work &work, Output &output);

} // namespace brightsweep::cli
