#pragma once

namespace brightsweep {

/// Tells PackageKit, where it runs, that packages have changed, so that software centres look
/// again. Starts nothing, waits for a second at most, and does not matter where it fails.
void tellSoftwareCentres();

} // namespace brightsweep
