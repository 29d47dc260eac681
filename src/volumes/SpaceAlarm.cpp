#include "volumes/SpaceAlarm.h"

#include "foundation/Log.h"
#include "foundation/SmallFile.h"
#include "volumes/FillLevel.h"
#include "volumes/MenuItem.h"

#include <string_view>

namespace brightsweep {

SpaceAlarm::SpaceAlarm(std::filesystem::path file, std::string boot)
    : m_file(std::move(file)), m_boot(std::move(boot)) {
    read();
}

std::vector<DSVolumeInfo> SpaceAlarm::crossed(const std::vector<DSVolumeInfo> &volumes,
                                              int alarmPercent) {
    std::vector<DSVolumeInfo> toTell;
    const std::set<std::string> before = m_told;
    for (const DSVolumeInfo &volume : volumes) {
        if (!MenuItem::storageWarns(volume.volType))
            continue;
        const auto isLowAt = [&](int percent) {
            return FillLevel::isLow(volume.nTotalSize, volume.nFreeSize, percent);
        };
        if (isLowAt(alarmPercent)) {
            if (m_told.insert(volume.volRootDir.native()).second)
                toTell.push_back(volume);
        } else if (!isLowAt(alarmPercent + recoveryMargin)) {
            m_told.erase(volume.volRootDir.native());
        }
    }
    if (m_told != before)
        write();
    return toTell;
}

// The boot and the mount points, each ended by a NUL, which no path holds.
void SpaceAlarm::read() {
    const auto text = m_file.empty() ? Result<std::string>(std::errc::no_such_file_or_directory)
                                     : readSmallFile(m_file);
    if (!text)
        return;
    bool isOfThisBoot = false;
    std::string_view rest = *text;
    for (auto end = rest.find('\0'); end != rest.npos; end = rest.find('\0')) {
        const std::string_view part = rest.substr(0, end);
        rest.remove_prefix(end + 1);
        if (isOfThisBoot)
            m_told.emplace(part);
        else if (!(isOfThisBoot = part == m_boot))
            return;
    }
}

void SpaceAlarm::write() const {
    if (m_file.empty())
        return;
    std::string text = m_boot + '\0';
    for (const std::string &root : m_told)
        text += root + '\0';
    if (const auto error = writeSmallFile(m_file, text))
        NSLog("What was told of low space could not be kept: %@", error);
}

} // namespace brightsweep
