#pragma once

#include "linux/VolumeSelection.h"
#include "platform/VolumeSource.h"

#include <string_view>

namespace brightsweep {

/// Ejects one volume and with it every mount of its drive, locks what was unlocked, and lets go of
/// the medium and of the drive. Never lazy, never forced. Blocks until it is done or refused, which
/// takes as long as unwritten pages take. A refusal names the programs that hold a mount.
///
/// A drive that carries the running system is left alone as a whole.
EjectResult ejectVolume(const SelectedVolume &volume);

/// The errno-like number for an error of the bus or of UDisks2.
int statusOfBusError(std::string_view name);

} // namespace brightsweep
