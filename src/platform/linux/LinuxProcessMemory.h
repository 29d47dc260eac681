#pragma once

#include "platform/MemorySource.h"

#include <atomic>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace brightsweep {

/// What the processes of a proc file system hold: by statm and, for exact shares, by smaps_rollup.
/// Kernel threads and processes that end meanwhile are left out. Any thread.
std::vector<ProcessMemory> readProcessMemory(const std::filesystem::path &proc,
                                             ProcessReading reading, const std::atomic<bool> *stop);

/// The identifier of the application that a process with that /proc/PID/cgroup was started for, by
/// the desktop's names of systemd units (systemd.io, "Desktop Environment Integration") and snap's;
/// empty where it was started otherwise.
std::string applicationOfGroup(std::string_view cgroup);

} // namespace brightsweep
