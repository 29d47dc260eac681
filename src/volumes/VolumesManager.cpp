#include "volumes/VolumesManager.h"

#include "foundation/Log.h"
#include "platform/Platform.h"
#include "platform/Workspace.h"
#include "volumes/VolumesInfo.h"

namespace brightsweep {

VolumesManager::VolumesManager() : VolumesManager(*Platform::current().volumes) {}

VolumesManager::VolumesManager(VolumeSource &source) : m_source(source) {}

bool VolumesManager::ejectSingleVolume(std::int16_t refNumber) {
    m_lastEjects.clear();
    return tryEject(refNumber);
}

std::int32_t VolumesManager::ejectAllVolumes() {
    m_lastEjects.clear();
    // All numbers first: an eject changes the list of volumes.
    std::vector<std::int16_t> references;
    VolumesInfo volumes(m_source);
    for (const DSVolumeInfo &volume : volumes.getAllVolsInfo()) {
        if (volume.bCanEject)
            references.push_back(volume.volRefNumber);
    }
    if (references.empty())
        return -1;
    std::int32_t result = 0;
    for (const std::int16_t reference : references) {
        if (!tryEject(reference))
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

bool VolumesManager::tryEject(std::int16_t refNumber) {
    const EjectResult &result =
        m_lastEjects.emplace_back(VolumeEjectAttempt{refNumber, m_source.eject(refNumber)}).result;
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
