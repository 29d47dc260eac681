#pragma once

#include <string>
#include <string_view>

namespace brightsweep {

/// Of what a package manager printed, the line that says why it failed: by the words that apt-get,
/// dpkg, rpm, pacman, dnf, zypper and flatpak begin it with, in the C locale. One that ends in a
/// colon comes with the line that it announces. Where no line is of that kind, the last one.
std::string decisiveLine(std::string_view output);

} // namespace brightsweep
