#include "volumes/FillLevel.h"

#include <limits>

namespace brightsweep::FillLevel {

namespace {

constexpr std::uint64_t hundred = 100;

struct Percents {
    std::uint64_t whole = 0;
    bool rest = false;
};

// Beyond 184 petabytes the product would not fit; there the lowest bits do not matter.
Percents percents(std::uint64_t part, std::uint64_t total) {
    while (part > std::numeric_limits<std::uint64_t>::max() / hundred) {
        part >>= 1;
        total >>= 1;
    }
    if (total == 0)
        return {};
    return {part * hundred / total, part * hundred % total != 0};
}

} // namespace

int usedPercent(std::uint64_t total, std::uint64_t free) {
    if (total == 0 || free > total)
        return -1;
    const Percents used = percents(total - free, total);
    const std::uint64_t roundedUp = used.whole + (used.rest ? 1 : 0);
    return roundedUp > hundred ? -1 : int(roundedUp);
}

std::uint64_t freePercent(std::uint64_t total, std::uint64_t free) {
    return percents(free, total).whole;
}

bool isLow(std::uint64_t total, std::uint64_t free, int alarmPercent) {
    return total != 0 && alarmPercent >= 0 &&
           freePercent(total, free) <= std::uint64_t(alarmPercent);
}

} // namespace brightsweep::FillLevel
