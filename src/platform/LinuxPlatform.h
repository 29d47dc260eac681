#pragma once

namespace brightsweep {

struct Platform;

/// Every facility in its Linux form.
Platform makeLinuxPlatform();

} // namespace brightsweep
