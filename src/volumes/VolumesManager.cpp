#include "volumes/VolumesManager.h"

#include "foundation/Log.h"
#include "platform/Platform.h"
#include "platform/Workspace.h"
#include "volumes/VolumesInfo.h"

#include <utility>

namespace brightsweep {

VolumesManager::VolumesManager() : VolumesManager(*Platform::current().volumes) {}

VolumesManager::VolumesManager(VolumeSource &source) : m_source(source) {}

bool VolumesManager::ejectSingleVolume(std::int16_t refNumber) {
    m_lastEjects.clear();
    return tryEject(refNumber, nameOf(refNumber));
}

std::int32_t VolumesManager::ejectAllVolumes() {
    m_lastEjects.clear();
    // All of them first: an eject changes the list of volumes.
    std::vector<std::pair<std::int16_t, std::string>> ejectable;
    VolumesInfo volumes(m_source);
    for (const DSVolumeInfo &volume : volumes.getAllVolsInfo()) {
        if (volume.bCanEject)
            ejectable.emplace_back(volume.volRefNumber, volume.volumeName.toStdString());
    }
    if (ejectable.empty())
        return -1;
    std::int32_t result = 0;
    for (const auto &[reference, name] : ejectable) {
        if (!tryEject(reference, name))
            result = 1;
    }
    return result;
}

bool VolumesManager::openVolRootDir(const std::filesystem::path &path) {
    if (path.empty())
        return false;
    std::filesystem::path plain = path.lexically_normal();
    if (!plain.has_filename() && plain.has_relative_path())
        plain = plain.parent_path();
    return Platform::current().workspace->open(plain);
}

std::string VolumesManager::nameOf(std::int16_t refNumber) {
    for (const VolumeFacts &facts : m_source.volumes()) {
        if (facts.refNumber == refNumber)
            return facts.name;
    }
    return {};
}

bool VolumesManager::tryEject(std::int16_t refNumber, std::string name) {
    VolumeEjectAttempt attempt{refNumber, std::move(name), {}};
    attempt.result = m_source.eject(refNumber);
    const EjectResult &result = m_lastEjects.emplace_back(std::move(attempt)).result;
    if (result.driveStays)
        NSLog("The volume %d is unmounted, but its drive stays: %@", refNumber, result.message);
    if (result.status == 0)
        return true;
    NSLog("Eject the volume %d failed result: %d", refNumber, result.status);
    std::string holders;
    for (const std::string &holder : result.holders)
        holders += (holders.empty() ? "" : ", ") + holder;
    NSLog("The volume %d is held by: %@ (%@)", refNumber, holders.empty() ? "nobody seen" : holders,
          result.message);
    return false;
}

} // namespace brightsweep
