#pragma once

#include "linux/VolumeSelection.h"

#include <string>
#include <string_view>
#include <vector>

namespace brightsweep {

/// The names of the programs that hold one of the mounts: by an open file, their working folder,
/// their root, their program file or a mapping. Each name once, in the order of process numbers.
/// Of processes of other users only what the system shows. Asks no file system anything.
std::vector<std::string> holdersOf(const std::vector<Mount> &held);

/// True when a line of /proc/PID/maps shows a file of the device.
bool mapsDevice(std::string_view line, std::uint32_t majorNumber, std::uint32_t minorNumber);

} // namespace brightsweep
