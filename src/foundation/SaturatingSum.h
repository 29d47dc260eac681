#pragma once

#include <cstdint>
#include <limits>

namespace brightsweep {

/// A sum that stays at the largest value instead of starting over.
constexpr std::uint64_t addSaturating(std::uint64_t sum, std::uint64_t more) {
    constexpr auto most = std::numeric_limits<std::uint64_t>::max();
    return more > most - sum ? most : sum + more;
}

} // namespace brightsweep
