#pragma once

#include <cstdint>

namespace brightsweep {

/// How full a store is, in whole percents, as rows and the status item show it.
namespace FillLevel {

/// The used part rounded up, so that anything used shows; -1 where there is nothing to show: no
/// capacity, or more free than there is.
int usedPercent(std::uint64_t total, std::uint64_t free);
/// The free part rounded down; 0 without capacity. Above 100 where more is free than there is.
std::uint64_t freePercent(std::uint64_t total, std::uint64_t free);
/// At the level or below it; never without capacity.
bool isLow(std::uint64_t total, std::uint64_t free, int alarmPercent);

} // namespace FillLevel
} // namespace brightsweep
