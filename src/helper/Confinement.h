#pragma once

namespace brightsweep::helper {

/// Confines the calling process, which is about to become a tool that removes what lies in one
/// directory: it may remove names below that directory and change nothing else (Landlock), and it
/// opens no socket, traces nobody, mounts nothing and loads no module (seccomp; those calls fail
/// with EPERM). Where the kernel cannot do the one, the other holds.
///
/// For a child between fork and exec: only system calls. False when rights could not be given up.
bool confineToRemoving(int directory);

} // namespace brightsweep::helper
