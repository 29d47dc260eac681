#include "memory/LargestPrograms.h"

#include <algorithm>
#include <map>
#include <tuple>
#include <utility>

namespace brightsweep {

std::vector<ProgramMemory> largestPrograms(const std::vector<ProcessMemory> &processes,
                                           std::size_t count) {
    struct Group {
        ProgramMemory program;
        std::uint64_t mostShared = 0;
        std::uint64_t largest = 0; // of its processes
    };
    std::map<std::pair<std::string, std::string>, Group> groups;
    for (const ProcessMemory &process : processes) {
        Group &group =
            groups[process.application.empty() ? std::pair(std::string(), process.program)
                                               : std::pair(process.application, std::string())];
        ProgramMemory &program = group.program;
        const std::uint64_t whole = process.own + process.shared;
        if (program.processes == 0 || whole > group.largest) {
            group.largest = whole;
            program.program = process.program;
        }
        program.application = process.application;
        program.bytes += process.own;
        group.mostShared = std::max(group.mostShared, process.shared);
        ++program.processes;
    }
    std::vector<ProgramMemory> programs;
    for (auto &[key, group] : groups) {
        group.program.bytes += group.mostShared;
        programs.push_back(std::move(group.program));
    }
    const auto end = programs.begin() + std::ptrdiff_t(std::min(count, programs.size()));
    std::partial_sort(programs.begin(), end, programs.end(), [](const auto &a, const auto &b) {
        return std::tie(b.bytes, a.application, a.program) <
               std::tie(a.bytes, b.application, b.program);
    });
    programs.erase(end, programs.end());
    return programs;
}

} // namespace brightsweep
