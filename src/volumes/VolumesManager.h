#pragma once

#include "platform/VolumeSource.h"

#include <filesystem>
#include <vector>

namespace brightsweep {

/// One attempt to eject a volume and how it went.
struct VolumeEjectAttempt {
    std::int16_t refNumber = 0;
    EjectResult result;
};

/// Ejects volumes and opens them. An eject blocks until the volume has gone or will not go, which
/// may be minutes: a program with a window calls it on a worker. An instance belongs to one thread.
class VolumesManager {
public:
    VolumesManager();
    explicit VolumesManager(VolumeSource &source);

    /// False when the volume is still there.
    bool ejectSingleVolume(std::int16_t refNumber);
    /// Tries every volume that can be ejected, whatever became of the ones before. -1 when there
    /// was none, 1 when any failed, else 0.
    std::int32_t ejectAllVolumes();
    /// Shows the volume's root in the file manager; false for an empty path.
    bool openVolRootDir(const std::filesystem::path &path);

    /// What the last call of one of the two has tried, in order.
    const std::vector<VolumeEjectAttempt> &lastEjects() const { return m_lastEjects; }

private:
    bool tryEject(std::int16_t refNumber);

    VolumeSource &m_source;
    std::vector<VolumeEjectAttempt> m_lastEjects;
};

} // namespace brightsweep
