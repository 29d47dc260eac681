#pragma once

namespace brightsweep {

/// The command "fr" of the process.
class ClearMemory {
public:
    /// Looks for "fr" with a value behind it at every place of the arguments. Where it stands, the
    /// value is logged and the process's exit status, 0, is returned; no memory is touched. -1
    /// where it does not stand, or stands last.
    static int freeMemory(int argc, const char *const *argv);
};

} // namespace brightsweep
