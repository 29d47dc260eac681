#pragma once

#include "volumes/DSVolumeInfo.h"

#include <filesystem>
#include <set>
#include <string>
#include <vector>

namespace brightsweep {

/// Says once that a volume has come down to the alarm level, and again only after it has been
/// above the level by a margin in between, so that one that hovers there is told once. Volumes
/// whose rows never warn are never told. A volume is known by its mount point: one that goes and
/// comes back is not told again. Main thread.
class SpaceAlarm {
public:
    /// How far above the level a volume has recovered, in percent of its size.
    static constexpr int recoveryMargin = 2;

    /// What has been told stands in the file, with the boot that it was told in, so that a program
    /// that is started anew does not tell it again. Without a file nothing outlives this object.
    explicit SpaceAlarm(std::filesystem::path file = {}, std::string boot = {});

    /// Those of the volumes that are to be told now.
    std::vector<DSVolumeInfo> crossed(const std::vector<DSVolumeInfo> &volumes, int alarmPercent);

private:
    void read();
    void write() const;

    const std::filesystem::path m_file;
    const std::string m_boot;
    std::set<std::string> m_told; // mount points
};

} // namespace brightsweep
