#pragma once

namespace brightsweep {

struct Platform;

/// Every facility in its Linux form.
Platform makeLinuxPlatform();

/// For programs with a window, before there is an application object or a thread: Qt waits
/// for the session bus while it starts. Where that takes connections but does not answer within
/// three seconds, the process is as if there were none, and true is the answer; the facilities of
/// the platform find the bus again once it answers, and so do programs that it starts.
bool leaveSilentSessionBus();

} // namespace brightsweep
