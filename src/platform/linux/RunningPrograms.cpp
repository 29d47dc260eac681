#include "platform/linux/RunningPrograms.h"

#include "foundation/SmallFile.h"
#include "platform/linux/LinuxFileHolders.h"

#include <unistd.h>

#include <filesystem>

namespace brightsweep {

std::vector<RunningProgram> runningPrograms() {
    constexpr std::size_t longestName = 64;
    std::vector<RunningProgram> programs;
    for (const int process : runningProcesses()) {
        if (process == ::getpid())
            continue;
        const auto folder = std::filesystem::path("/proc") / std::to_string(process);
        const auto name = readSmallFile(folder / "comm", longestName);
        if (!name)
            continue;
        RunningProgram program;
        program.name = name->substr(0, name->find('\n'));
        std::error_code error;
        program.file = std::filesystem::read_symlink(folder / "exe", error).native();
        program.group = readSmallFile(folder / "cgroup").value_or(std::string());
        programs.push_back(std::move(program));
    }
    return programs;
}

} // namespace brightsweep
