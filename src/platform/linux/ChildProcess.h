#pragma once

#include "foundation/FileDescriptor.h"
#include "foundation/Result.h"

#include <sys/types.h>

#include <string>
#include <vector>

namespace brightsweep {

/// A small tool of the system that runs in the C locale, reads nothing and writes into a pipe. It
/// holds no other descriptor of this process.
///
/// Destroying a running one kills it and does not wait: one that hangs in the kernel, which no
/// signal ends, delays nobody.
class ChildProcess {
public:
    enum class Purpose {
        Question, ///< its words of failure are dropped; it ends with the thread that started it
        Act,      ///< its words of failure come through the pipe; it goes on whatever happens here
    };

    /// The tool is looked for as the shell does; one that is not there is ENOENT.
    static Result<ChildProcess> start(const std::vector<std::string> &arguments, Purpose purpose);

    ChildProcess(ChildProcess &&other) noexcept;
    ChildProcess &operator=(ChildProcess &&other) noexcept;
    ~ChildProcess();

    /// The read end; it does not block.
    int output() const { return m_output.get(); }
    /// Takes what has arrived; false once the tool has closed its end.
    bool read(std::string &text);
    /// Ends the tool as soon as the kernel lets go of it; its pipe then closes.
    void kill();
    /// Blocks until the tool has ended; its exit status, or 128 and the signal.
    int wait();

private:
    ChildProcess() = default;

    pid_t m_process = -1;
    FileDescriptor m_output;
};

struct ToolResult {
    int status = 0;
    std::string output;
};

/// Runs a tool to its end, however long it takes.
Result<ToolResult> runTool(const std::vector<std::string> &arguments);

} // namespace brightsweep
