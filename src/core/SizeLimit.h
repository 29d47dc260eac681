#pragma once

#include <QString>

#include <cstdint>

namespace brightsweep {

/// A unit that a size limit may be given in, by the tag of its row in the unit pop-ups.
struct SizeUnit {
    int tag = 0;
    const char *name = nullptr;
    std::uint64_t factor = 1;
};

inline constexpr SizeUnit sizeUnits[] = {
    {0, "bytes", 1},
    {1, "KB", 1'000},
    {2, "MB", 1'000'000},
    {3, "GB", 1'000'000'000},
    // The low 32 bits of 10 to the 12th, sign-extended: no file reaches a limit in this unit.
    {4, "TB", std::uint64_t(std::int64_t(-727'379'968))},
};

/// The bytes of a limit, modulo 2 to the 64th. An unknown tag counts bytes.
constexpr std::uint64_t limitInBytes(std::uint64_t limit, std::int64_t tag) {
    for (const SizeUnit &unit : sizeUnits) {
        if (unit.tag == tag)
            return limit * unit.factor;
    }
    return limit;
}

/// The bytes of the limit that the settings hold under a pair of keys.
std::uint64_t storedLimitInBytes(const QString &limitKey, const QString &unitKey);

} // namespace brightsweep
