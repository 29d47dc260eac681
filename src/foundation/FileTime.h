#pragma once

#include <chrono>

namespace brightsweep {

/// Time of a file's last change.
using FileTime = std::chrono::sys_time<std::chrono::nanoseconds>;

} // namespace brightsweep
