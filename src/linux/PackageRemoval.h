#pragma once

#include "linux/PackageNames.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace brightsweep {

/// Packages that go together, exactly these.
struct PackageRemoval {
    PackageFamily family = PackageFamily::Dpkg;
    std::vector<std::string> names; ///< the application first; at most maximumPackages
    /// Those of the names whose settings for the whole system go as well.
    std::vector<std::string> purge;
    /// For so long another program's act may be waited for.
    std::uint32_t lockSeconds = 3;

    bool operator==(const PackageRemoval &) const = default;
};

enum class PackagesOutcome : std::uint8_t {
    Removed = 0, ///< none of them is installed any more
    Refused = 1, ///< nothing was done: the request is not allowed
    Changed = 2, ///< nothing was done: something else would go, come or break
    Busy = 3,    ///< nothing was done: another program is at work
    Failed = 4,  ///< the package manager could not
    Broken = 5,  ///< the package manager stopped in the middle, and wants that put right
};

struct PackagesReply {
    PackagesOutcome outcome = PackagesOutcome::Refused;
    std::vector<std::string> gone; ///< those of the names that are not installed afterwards
    std::string words;             ///< why, or the end of what the package manager said

    bool operator==(const PackagesReply &) const = default;
};

/// Empty, or what is wrong with a request by its words alone: every name must be one of its family,
/// none may come twice, and only what goes can be purged.
std::string_view refusalOfPackages(const PackageRemoval &removal);

} // namespace brightsweep
