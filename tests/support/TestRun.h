#pragma once

namespace brightsweep::test {

/// Runs every test of the binary, each with a home, a platform and settings of its own. The
/// application object is there before and outlives the call.
int runTests(int &argc, char **argv);

} // namespace brightsweep::test
