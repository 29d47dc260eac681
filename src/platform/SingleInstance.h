#pragma once

#include <functional>
#include <string>

namespace brightsweep {

enum class InstanceOutcome {
    First,
    PassedOn, ///< another one runs and has been told
    Hanging,  ///< another one runs and does not answer; said on standard error
    Failed,   ///< it cannot be known
};

/// Keeps the program to one running instance for each user's session. Main thread.
///
/// The right to be the first one ends with the process, however that ends.
class SingleInstance {
public:
    virtual ~SingleInstance();
    virtual std::string unavailableReason() const { return {}; }

    /// Makes this process the first one, or finds another that is. That one is asked to show
    /// itself if `activate` is set, and gets the token for it. Blocks for two seconds at most.
    virtual InstanceOutcome claim(bool activate, const std::string &activationToken) = 0;
    /// Called for each later start that asks this one to show itself. What was asked before a
    /// handler is set is kept and delivered to it from the event loop.
    virtual void setActivateHandler(std::function<void(const std::string &token)> handler) = 0;
};

} // namespace brightsweep
