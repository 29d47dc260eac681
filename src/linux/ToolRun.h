#pragma once

#include <functional>
#include <string>
#include <vector>

namespace brightsweep {

struct ToolOutput {
    int status = 127; ///< its exit status, or 128 and the signal; 127 where it cannot be started
    /// What it printed, standard error included; of much output the end.
    std::string text;
};

/// Runs a tool of the system to its end, with nothing to read and its own session, so that no
/// terminal is asked. A daemon that it leaves behind is not waited for, though it may hold the
/// pipe. Blocks for as long as that takes; never ends the tool.
ToolOutput runToEnd(const std::vector<std::string> &arguments,
                    const std::vector<std::string> &environment);

/// runToEnd() with an environment of one's own, or what a test puts in its place.
using ToolRunner = std::function<ToolOutput(const std::vector<std::string> &arguments)>;

} // namespace brightsweep
