#pragma once

#include "foundation/FileDescriptor.h"

#include <sys/types.h>

namespace brightsweep::cli {

/// What Ctrl-C, a request to end and a terminal that closes (SIGINT, SIGTERM, SIGHUP) come to.
///
/// The first one asks the command to end: it stops its work, puts out what is known, and the
/// process ends within a second with 128 and the signal's number. The second one ends it at once.
/// Neither waits for work that hangs: a thread that waits for a file system which keeps silent can
/// be ended by nothing, and keeps its process from ending too. So the process that was started only
/// waits and listens, and one of its own does the work; that one may be left behind.
///
/// All static: there is one for the process. Any thread.
class Interruption {
public:
    /// Divides the process. Returns in the working one, or in the only one where no second can be
    /// had. For the beginning of main(), before any thread.
    static void divideProcess();

    /// The signal that asked the command to end, 0 while none has.
    static int signal();
    /// True once the command was asked to end and what it waits for has had its time.
    static bool timeIsUp();
    /// What is known is now being put out, however long that takes.
    static void outputBegins();
    /// Ends the process with this exit status, unless it was interrupted, and does not wait for its
    /// threads. All has been put out.
    [[noreturn]] static void end(int status);

private:
    [[noreturn]] static void supervise(pid_t worker, FileDescriptor reports);
};

} // namespace brightsweep::cli
