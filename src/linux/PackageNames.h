#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace brightsweep {

/// The package managers that are known, by what they share: the database and the lowest tool.
enum class PackageFamily : std::uint8_t { Dpkg = 1, Rpm = 2, Pacman = 3 };

/// So many packages go at once at most. What takes more along is no application but a part that
/// half of the system stands on.
inline constexpr std::size_t maximumPackages = 100;

/// True for what a family calls a name: a closed grammar, never an option, a path, a pattern or a
/// version, and safe in a shell's words. A dpkg name may have an architecture behind a colon.
bool isPackageName(PackageFamily family, std::string_view name);

} // namespace brightsweep
