#pragma once

#include <compare>
#include <cstdint>

namespace brightsweep {

/// Which file or directory it is, by whatever path it is reached.
struct FileIdentity {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;

    auto operator<=>(const FileIdentity &) const = default;
};

} // namespace brightsweep
