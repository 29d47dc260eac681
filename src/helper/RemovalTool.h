#pragma once

#include <functional>
#include <string>
#include <vector>

namespace brightsweep::helper {

/// What the system's removal tool said, and whether it was ended.
struct ToolEnd {
    bool started = false;
    bool stopped = false;
    std::string output; ///< the beginning, at most maximumOutput bytes; where not started, why
};

/// Runs the tool on names of a directory, confined to it and in a process group of its own, and
/// reads its output to the end.
///
/// `wait` waits for the descriptor to become readable or for a reason to stop, and gives false for
/// the latter; the tool is then ended within a second.
ToolEnd runRemovalTool(int directory, const std::vector<std::string> &names,
                       const std::function<bool(int output)> &wait);

} // namespace brightsweep::helper
