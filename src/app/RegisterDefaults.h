#pragma once

namespace brightsweep {

/// Registers every default of the program, in the order in which the last one of a key holds. Both
/// front ends call it first.
void registerAllDefaults();

} // namespace brightsweep
