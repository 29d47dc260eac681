#pragma once

#include <functional>

namespace brightsweep {

/// Threads that one job of reading is worth, the calling one included: as many as wanted, or for 0
/// as many as there are processors.
unsigned readingThreads(unsigned wanted);

/// Runs the function on the calling thread and on helpers, and returns when all have returned.
/// Where the system gives no more threads, fewer do the work.
void runOnThreads(unsigned threads, const std::function<void()> &work);

} // namespace brightsweep
