#pragma once

#include "linux/VolumeSelection.h"

#include <cstdint>
#include <map>
#include <mutex>
#include <vector>

namespace brightsweep {

/// A number that no other mount of this boot has where the kernel offers one (from 6.8 on); else
/// one made of what identifies the mount: its id, its device, the device's medium, its place.
using MountIdentity = std::uint64_t;

/// The identities of the volumes' mounts, in their order. Touches none of them.
std::vector<MountIdentity> mountIdentities(const std::vector<SelectedVolume> &volumes);

/// Hands out reference numbers, 1 to 32767, by identity, the same in every process that sees the
/// same volumes. A mount keeps its number as long as this object sees it. Safe from every thread.
class ReferenceNumbers {
public:
    /// One number for each identity, in the given order.
    std::vector<std::int16_t> assign(const std::vector<MountIdentity> &identities);

private:
    std::mutex m_mutex;
    std::map<MountIdentity, std::int16_t> m_numbers;
};

} // namespace brightsweep
