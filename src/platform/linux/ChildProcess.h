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
    /// The tool is looked for as the shell does. `withErrors` sends its standard error down the
    /// same pipe; else it goes nowhere.
    static Result<ChildProcess> start(const std::vector<std::string> &arguments, bool withErrors);

    ChildProcess(ChildProcess &&other) noexcept;
    ChildProcess &operator=(ChildProcess &&other) noexcept;
    ~ChildProcess();

    /// The read end; it does not block.
    int output() const { return m_output.get(); }
    /// Takes what has arrived; false once the tool has closed its end.
    bool read(std::string &text);
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
