#pragma once

#include "platform/VolumeSource.h"
#include "volumes/DSVolumeInfo.h"

#include <vector>

namespace brightsweep {

/// There is no such volume; ends an enumeration.
inline constexpr int nsvErr = -35;

/// Answers which volumes are mounted, how full each is, and what kind of storage it is, from the
/// facts of the platform's VolumeSource. Nothing is remembered between two enumerations. Belongs to
/// one thread; never waits for a service or a server.
class VolumesInfo {
public:
    /// Enumerates once.
    VolumesInfo();
    explicit VolumesInfo(VolumeSource &source);

    /// Appends a record for each volume, in the system's order. Volumes without capacity are left
    /// out, and so are those whose attributes cannot be read.
    void enumVolumesInfo();
    /// Empties the records and enumerates anew; the next call does so again with the same array.
    std::vector<DSVolumeInfo> &getAllVolsInfo();

    std::int32_t getVolumeType(const VolumeFacts &facts);
    /// The path plays no part.
    bool getVolEjectFlag(const VolumeFacts &facts, const std::filesystem::path &forVolume) const;
    /// True where the device lies on optical media. A search that fails says no.
    bool volCDorDVD(const VolumeFacts &facts);

    /// 0 where the facts are older than version 3.
    static std::uint32_t getVolParmsInfoExtendedAttributes(const VolumeFacts &facts);
    static bool isNetworkVolume(const VolumeFacts &facts);
    static bool volIsRemovable(const VolumeFacts &facts);
    static bool volIsEjectable(const VolumeFacts &facts);
    static bool volIsExtendBus(const VolumeFacts &facts);

private:
    VolumeSource &m_source;
    std::vector<DSVolumeInfo> volsArray;
    bool bVolIsCDorDVD = false;
};

} // namespace brightsweep
