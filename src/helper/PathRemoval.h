#pragma once

#include "helper/Frame.h"
#include "helper/PathRules.h"

namespace brightsweep::helper {

/// Removes single items with all below them, as whoever runs the process.
///
/// The way down is taken by descriptors and through no link; what was checked is what goes, however
/// the names above it change meanwhile. Nothing goes across a mount. The removal itself is the
/// system's own tool, started in the directory that holds the item.
class PathRemoval {
public:
    explicit PathRemoval(ProtectedPlaces places) : m_places(std::move(places)) {}

    /// Blocks until the tool has ended. An item that is not there any more is performed and gone.
    Reply run(const RemovePath &removal) const;

private:
    Reply runIn(int parent, const std::string &path, const std::string &name) const;
    std::string refusalOf(int parent, const std::string &path, const std::string &name) const;
    bool isLockedByApt(const std::string &path) const;

    ProtectedPlaces m_places;
};

} // namespace brightsweep::helper
