#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace brightsweep::helper {

/// True where apt-get would remove exactly these packages and do nothing else, by its simulation.
bool matchesSimulation(std::string_view output, const std::vector<std::string> &names);
/// The same by what it tells a hook of DPkg::Pre-Install-Pkgs, in version 3 of that format; see
/// apt.conf(5).
bool matchesReport(std::string_view report, const std::vector<std::string> &names);

} // namespace brightsweep::helper
