#pragma once

#include <sys/types.h>

namespace brightsweep {

/// Has the kernel kill this process as soon as the given one, its parent, is gone; at once if that
/// has happened already.
void dieWithParent(pid_t parent);

} // namespace brightsweep
