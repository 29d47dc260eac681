#pragma once

#include <filesystem>
#include <functional>
#include <string>

namespace brightsweep {

enum class InstanceOutcome {
    First,
    PassedOn, ///< another one runs and has been told
    Hanging,  ///< another one runs and does not answer; said on standard error
    Failed,   ///< it cannot be known
};

/// A page that a start may ask for.
enum class RequestedPage {
    None,
    Duplicates, ///< to search a folder
    Usage,      ///< to show what takes the space in a folder
};

/// What a later start asks of the first one: to show itself, by the token for that, and perhaps a
/// page with a folder for it; an empty folder means the page alone.
struct InstanceRequest {
    std::string activationToken;
    RequestedPage page = RequestedPage::None;
    std::filesystem::path folder = {};
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
