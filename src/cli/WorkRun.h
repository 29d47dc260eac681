#pragma once

#include "cli/Command.h"

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <string>

class QEventLoop;

namespace brightsweep {

class RemovalRun;

namespace cli {

class JsonWriter;

/// Runs an event loop until it is quit, and shows the progress meanwhile. Once the command is
/// interrupted `stop` is called, time after time; when that has not led to an end in time, the work
/// is left behind: false is returned, and all that it may use has to stay until the process ends.
bool waitInterruptibly(QEventLoop &loop, Output &output, const std::function<void()> &stop,
                       const std::function<std::string()> &progress);

/// What a command has an engine do: the work itself, the engine's own stop, what to show of it
/// meanwhile, and what to put out at the end.
struct Work {
    std::function<void()> run; ///< on a thread of its own
    std::function<void()> stop;
    std::function<std::string()> progress;
    /// Puts out what is known and gives the exit status. The work has returned, unless it was left
    /// behind: then it may still be running, and the process ends with this.
    std::function<int(bool leftBehind)> tell;
};

/// Runs it, with an event loop on the calling thread. An exception of the work is thrown on.
int runWork(const Work &work, Output &output);

/// Marks the document of a command that was interrupted: `"interrupted":true`.
void writeInterrupted(JsonWriter &json);

/// What a command that removes shares with its work, which an interruption may leave behind: then
/// it stays until the process ends.
struct RemovalJob {
    /// Begins the one run of removals. False, and why on the output, where there is one already.
    bool begin(const std::string &command, Output &output);

    std::shared_ptr<RemovalRun> run; ///< none where nothing is applied
    std::atomic<bool> stop{false};
    std::mutex mutex; ///< guards what follows, and what a command adds to it
    std::string current;
    bool isRefused = false; ///< rights were asked for and not granted
};

/// Runs the work of such a job. The rights that it holds and its run end before `tell`, which puts
/// out what is known, under the lock, and gives the exit status.
int runRemoval(RemovalJob &job, const std::function<void()> &work, const std::function<int()> &tell,
               Output &output);

} // namespace cli
} // namespace brightsweep
