#include "volumes/SpaceAlarm.h"

#include "volumes/FillLevel.h"
#include "volumes/MenuItem.h"

namespace brightsweep {

std::vector<DSVolumeInfo> SpaceAlarm::crossed(const std::vector<DSVolumeInfo> &volumes,
                                              int alarmPercent) {
    std::vector<DSVolumeInfo> toTell;
    std::set<std::int16_t> stillTold;
    for (const DSVolumeInfo &volume : volumes) {
        if (!MenuItem::storageWarns(volume.volType))
            continue;
        const bool low = FillLevel::isLow(volume.nTotalSize, volume.nFreeSize, alarmPercent);
        const bool told = m_told.contains(volume.volRefNumber);
        const bool recovered =
            !FillLevel::isLow(volume.nTotalSize, volume.nFreeSize, alarmPercent + recoveryMargin);
        if (low && !told)
            toTell.push_back(volume);
        if (low || (told && !recovered))
            stillTold.insert(volume.volRefNumber);
    }
    m_told = std::move(stillTold);
    return toTell;
}

} // namespace brightsweep
