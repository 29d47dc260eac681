#pragma once

namespace brightsweep {

/// The controller of the application's panels.
class AppController {
public:
    /// Registers the defaults of the panels' animations. Once in a process, before any is read.
    static void initialize();
};

} // namespace brightsweep
