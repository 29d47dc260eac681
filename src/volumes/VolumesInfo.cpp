#include "volumes/VolumesInfo.h"

#include "core/UtilityFunction.h"
#include "foundation/Log.h"
#include "foundation/Paths.h"
#include "platform/Platform.h"
#include "platform/SystemFacts.h"

#include <algorithm>
#include <mutex>
#include <set>

namespace brightsweep {

namespace {

constexpr std::uint16_t firstVersionWithExtendedAttributes = 3;

// The mounts whose missing device has been told; enumerations are many and the line is the same.
struct ToldMounts {
    std::mutex mutex;
    std::set<std::int16_t> numbers;
};

ToldMounts &toldMounts() {
    static ToldMounts told;
    return told;
}

// True for the first time in the life of a mount.
bool isNews(std::int16_t refNumber) {
    const std::lock_guard lock(toldMounts().mutex);
    return toldMounts().numbers.insert(refNumber).second;
}

void forgetAllBut(const std::vector<VolumeFacts> &mounted) {
    const std::lock_guard lock(toldMounts().mutex);
    std::erase_if(toldMounts().numbers, [&](std::int16_t number) {
        return std::none_of(mounted.begin(), mounted.end(), [&](const VolumeFacts &facts) {
            return facts.refNumber == number && facts.optical == OpticalMedia::Unknown;
        });
    });
}

// The startup volume seldom has a label, and "/" names it to nobody: there it bears the machine's
// name, else the system's.
QString nameOf(const VolumeFacts &facts) {
    for (const char *const fact : {"kern.hostname", "kern.ostype"}) {
        if (facts.root != "/" || (!facts.name.empty() && facts.name != "/"))
            break;
        const auto name = Platform::current().facts->kernelValue(fact);
        if (name && !name->empty())
            return paths::text(*name);
    }
    return paths::text(facts.name);
}

} // namespace

VolumesInfo::VolumesInfo() : VolumesInfo(*Platform::current().volumes) {}

VolumesInfo::VolumesInfo(VolumeSource &source) : m_source(source) {
    enumVolumesInfo();
}

void VolumesInfo::enumVolumesInfo() {
    const std::vector<VolumeFacts> mounted = m_source.volumes();
    forgetAllBut(mounted);
    for (const VolumeFacts &facts : mounted) {
        if (facts.totalBytes == 0)
            continue;
        DSVolumeInfo record;
        record.nTotalSize = facts.totalBytes;
        record.nFreeSize = facts.freeBytes;
        record.freeSpace = UtilityFunction::convertVolSpace(facts.freeBytes);
        record.totalSpace = UtilityFunction::convertVolSpace(facts.totalBytes);
        record.volumeName = nameOf(facts);
        record.volRefNumber = facts.refNumber;
        record.volRootDir = facts.root;
        record.bIsDefaultVol = facts.root == "/";
        if (!facts.parametersKnown) {
            NSLog("FSGetVolumeParms failed returned %d\n", facts.parametersError);
            // A volume that has gone in the midst of it ends the enumeration as the end would.
            if (facts.parametersError == nsvErr)
                return;
            continue;
        }
        record.bCanEject = getVolEjectFlag(facts, facts.root);
        record.volType = getVolumeType(facts);
        // Optical media can always be ejected.
        if (record.volType == SuperDriver)
            record.bCanEject = true;
        record.volIcon = DSVolumeInfo::iconName(record.volType);
        volsArray.push_back(std::move(record));
    }
}

std::vector<DSVolumeInfo> &VolumesInfo::getAllVolsInfo() {
    volsArray.clear();
    enumVolumesInfo();
    return volsArray;
}

std::int32_t VolumesInfo::getVolumeType(const VolumeFacts &facts) {
    if (isNetworkVolume(facts))
        return NetworkStorage;
    if (volCDorDVD(facts))
        return SuperDriver;
    if (volIsExtendBus(facts))
        return ExternalStorage;
    // A disk image is known by elimination only.
    if (volIsRemovable(facts))
        return DiskImage;
    return LocalStorage;
}

bool VolumesInfo::getVolEjectFlag(const VolumeFacts &facts, const std::filesystem::path &) const {
    return isNetworkVolume(facts) || volIsExtendBus(facts) || volIsEjectable(facts);
}

bool VolumesInfo::volCDorDVD(const VolumeFacts &facts) {
    bVolIsCDorDVD = false;
    if (facts.optical != OpticalMedia::Unknown)
        bVolIsCDorDVD = facts.optical == OpticalMedia::Yes;
    else if (isNews(facts.refNumber))
        NSLog(facts.deviceId.empty() ? "IOBSDNameMatching returned a NULL dictionary."
                                     : "IOServiceGetMatchingService returned IO_OBJECT_NULL.");
    return bVolIsCDorDVD;
}

std::uint32_t VolumesInfo::getVolParmsInfoExtendedAttributes(const VolumeFacts &facts) {
    return facts.version < firstVersionWithExtendedAttributes ? 0 : facts.extendedAttributes;
}

bool VolumesInfo::isNetworkVolume(const VolumeFacts &facts) {
    return facts.serverAddress != 0;
}

bool VolumesInfo::volIsRemovable(const VolumeFacts &facts) {
    return (getVolParmsInfoExtendedAttributes(facts) & volumeIsRemovableBit) != 0;
}

bool VolumesInfo::volIsEjectable(const VolumeFacts &facts) {
    return (getVolParmsInfoExtendedAttributes(facts) & volumeIsEjectableBit) != 0;
}

bool VolumesInfo::volIsExtendBus(const VolumeFacts &facts) {
    return (getVolParmsInfoExtendedAttributes(facts) & volumeIsOnExternalBusBit) != 0;
}

} // namespace brightsweep
