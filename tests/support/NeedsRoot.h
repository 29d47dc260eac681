#pragma once

namespace brightsweep::test {

/// Ends the running test as skipped where root does not run it. For a test's body, its fixture, and
/// for what tests are made of; not for another thread or a forked child.
void needRoot();

} // namespace brightsweep::test
