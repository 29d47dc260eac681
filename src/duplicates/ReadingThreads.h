#pragma once

#include "platform/FileOperations.h"

#include <atomic>
#include <functional>

namespace brightsweep {

class ContentReader;

/// Threads that one job of reading is worth, the calling one included: as many as wanted, or for 0
/// as many as there are processors.
unsigned readingThreads(unsigned wanted);

/// Runs the function on the calling thread and on helpers, each with a reader of its own that looks
/// at `stop`, and returns when all have returned. Where the system gives no more threads, or no
/// memory for more readers, fewer do the work. The first exception raises `stop` and is thrown on
/// at the end.
void runOnThreads(unsigned threads, FileOperations &files, std::atomic<bool> &stop,
                  const std::function<void(ContentReader &)> &work);

} // namespace brightsweep
