#include "linux/PackageRemoval.h"

#include <algorithm>
#include <set>

namespace brightsweep {

std::string_view refusalOfPackages(const PackageRemoval &removal) {
    if (removal.names.empty() || removal.names.size() > maximumPackages)
        return "no packages, or too many";
    const std::set<std::string_view> names(removal.names.begin(), removal.names.end());
    const std::set<std::string_view> purged(removal.purge.begin(), removal.purge.end());
    if (names.size() != removal.names.size() || purged.size() != removal.purge.size())
        return "a package is named twice";
    const auto isName = [&](std::string_view name) { return isPackageName(removal.family, name); };
    if (!std::all_of(names.begin(), names.end(), isName))
        return "not the name of a package";
    if (!std::includes(names.begin(), names.end(), purged.begin(), purged.end()))
        return "a package is to be purged that is not removed";
    return {};
}

} // namespace brightsweep
