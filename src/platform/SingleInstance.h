#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

namespace brightsweep {

enum class InstanceOutcome {
    First,
    PassedOn, ///< another one runs and has been told
    Hanging,  ///< another one runs and does not answer; said on standard error
    Failed,   ///< it cannot be known
};

/// What a later start asks of the first one: to show itself, by the token for that, and perhaps to
/// search a folder for duplicates or to show what takes the space in it. An empty folder means the
/// page for that, without a folder.
struct InstanceRequest {
    std::string activationToken;
    std::optional<std::filesystem::path> duplicates;
    std::optional<std::filesystem::path> usage = std::nullopt;
};

/// Keeps the program to one running instance for each user's session. Main thread.
///
/// The right to be the first one ends with the process, however that ends.
class SingleInstance {
public:
    virtual ~SingleInstance();
    virtual std::string unavailableReason() const { return {}; }

    /// Makes this process the first one, or finds another that is. That one is asked to show
    /// itself if `activate` is set, and gets the request. Blocks for two seconds at most.
    virtual InstanceOutcome claim(bool activate, const InstanceRequest &request) = 0;
    /// Called for each later start that asks this one to show itself. What was asked before a
    /// handler is set is kept and delivered to it from the event loop.
    virtual void setActivateHandler(std::function<void(const InstanceRequest &)> handler) = 0;
};

} // namespace brightsweep
