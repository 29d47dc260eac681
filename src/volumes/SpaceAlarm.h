#pragma once

#include "volumes/DSVolumeInfo.h"

#include <set>
#include <vector>

namespace brightsweep {

/// Says once that a volume has come down to the alarm level, and again only after it has been
/// above the level by a margin in between, so that one that hovers there is told once. Volumes
/// whose rows never warn are never told.
class SpaceAlarm {
public:
    /// How far above the level a volume has recovered, in percent of its size.
    static constexpr int recoveryMargin = 2;

    /// Those of the volumes that are to be told now.
    std::vector<DSVolumeInfo> crossed(const std::vector<DSVolumeInfo> &volumes, int alarmPercent);

private:
    std::set<std::int16_t> m_told;
};

} // namespace brightsweep
