#pragma once

#include "platform/FileHolders.h"

#include <string_view>

namespace brightsweep {

/// Links and mappings of /proc.
class LinuxFileHolders final : public FileHolders {
public:
    std::vector<HeldFile> heldFiles() override;
    std::vector<FileIdentity> writtenFiles() override;
};

/// The numbers of all processes that can be seen, in ascending order.
std::vector<int> runningProcesses();

/// The path in a line of /proc/PID/maps with the system's escapes undone; empty without one.
std::string mappedPath(std::string_view line);

} // namespace brightsweep
