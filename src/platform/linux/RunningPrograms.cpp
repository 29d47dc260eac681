#include "platform/linux/RunningPrograms.h"

#include "foundation/SmallFile.h"
#include "platform/linux/LinuxFileHolders.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <string_view>

namespace brightsweep {

namespace {

constexpr std::array<std::string_view, 9> interpreters = {"bash", "dash",   "gjs",  "mono", "node",
                                                          "perl", "python", "ruby", "sh"};
constexpr std::string_view deleted = " (deleted)";
constexpr std::size_t longestCommand = 4096;

bool isInterpreter(std::string_view program) {
    const std::string_view name = program.substr(program.rfind('/') + 1);
    return std::any_of(interpreters.begin(), interpreters.end(), [&](std::string_view known) {
        // "python3.11"
        return name.starts_with(known) &&
               name.substr(known.size()).find_first_not_of("0123456789.") == name.npos;
    });
}

// The first argument that is no option, where it is a whole path.
std::string scriptIn(std::string_view command) {
    for (bool isProgram = true; !command.empty(); isProgram = false) {
        const auto end = std::min(command.find('\0'), command.size());
        const std::string_view word = command.substr(0, end);
        if (!isProgram && !word.starts_with('-'))
            return std::string(word.starts_with('/') ? word : std::string_view());
        command.remove_prefix(std::min(end + 1, command.size()));
    }
    return {};
}

} // namespace

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
        // One that was exchanged or removed meanwhile runs on.
        if (program.file.ends_with(deleted))
            program.file.resize(program.file.size() - deleted.size());
        if (isInterpreter(program.file))
            program.script =
                scriptIn(readSmallFile(folder / "cmdline", longestCommand).value_or(std::string()));
        program.group = readSmallFile(folder / "cgroup").value_or(std::string());
        programs.push_back(std::move(program));
    }
    return programs;
}

} // namespace brightsweep
