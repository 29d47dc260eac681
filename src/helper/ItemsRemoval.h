#pragma once

#include "helper/Frame.h"
#include "linux/SystemPlaces.h"

#include <functional>

namespace brightsweep::helper {

/// Removes items of one directory with all below them, as whoever runs the process.
///
/// The way down is taken by descriptors, through no link and across no mount; where the directory
/// is and what the items are is looked at there, and only what the table of places leaves to an
/// administrator's removal goes. The removal itself is the system's own tool.
class ItemsRemoval {
public:
    explicit ItemsRemoval(RemovalCaller caller) : m_caller(std::move(caller)) {}

    /// Blocks until the tool has ended. An item that is not there any more is performed and gone.
    /// `wait` is as for runRemovalTool().
    Replies run(const RemoveItems &removal, const std::function<bool(int output)> &wait);

private:
    const RemovalCaller m_caller;
    RecentPlaces m_places;
};

} // namespace brightsweep::helper
