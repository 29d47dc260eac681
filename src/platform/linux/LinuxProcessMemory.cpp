#include "platform/linux/LinuxProcessMemory.h"

#include "foundation/FileDescriptor.h"

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <climits>
#include <cstdint>
#include <memory>
#include <optional>

namespace brightsweep {

namespace {

constexpr std::uint64_t kibibyte = 1024;
constexpr std::string_view deletedMark = " (deleted)";

// The executable of a script is the interpreter; the process is named after the script.
constexpr std::array<std::string_view, 8> interpreters = {"bash", "dash",   "gjs",  "node",
                                                          "perl", "python", "ruby", "sh"};

// What one read gives of a file below the descriptor; empty where it cannot be had.
template <std::size_t size>
std::string_view readAt(int folder, const std::string &name, std::array<char, size> &buffer) {
    const FileDescriptor file(::openat(folder, name.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    const ssize_t got = file ? ::read(file.get(), buffer.data(), size) : -1;
    return {buffer.data(), std::size_t(std::max<ssize_t>(got, 0))};
}

std::uint64_t takeNumber(std::string_view &text) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
    std::uint64_t number = 0;
    const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
    text.remove_prefix(std::size_t(read.ptr - text.data()));
    return number;
}

bool isInterpreter(std::string_view program) {
    return std::any_of(interpreters.begin(), interpreters.end(), [&](std::string_view name) {
        // "python3.11" is one, "shotwell" is none.
        return program.starts_with(name) &&
               program.find_first_not_of("0123456789.", name.size()) == program.npos;
    });
}

std::string programOf(int proc, const std::string &process) {
    std::array<char, PATH_MAX> buffer;
    const ssize_t length =
        ::readlinkat(proc, (process + "/exe").c_str(), buffer.data(), buffer.size());
    std::string_view program(buffer.data(), std::size_t(std::max<ssize_t>(length, 0)));
    if (program.ends_with(deletedMark))
        program.remove_suffix(deletedMark.size());
    program.remove_prefix(program.rfind('/') + 1); // npos + 1 is 0
    if (!program.empty() && !isInterpreter(program))
        return std::string(program);
    std::array<char, 64> name;
    std::string_view comm = readAt(proc, process + "/comm", name);
    if (comm.ends_with('\n'))
        comm.remove_suffix(1);
    return std::string(comm.empty() ? program : comm);
}

// The proportional share of everything that the process has mapped.
std::optional<std::uint64_t> exactShare(int proc, const std::string &process) {
    constexpr std::string_view key = "\nPss:";
    std::array<char, 4096> buffer;
    std::string_view text = readAt(proc, process + "/smaps_rollup", buffer);
    const auto at = text.find(key);
    if (at == text.npos)
        return std::nullopt;
    text.remove_prefix(at + key.size());
    return takeNumber(text) * kibibyte;
}

// "\x2d" in a unit's name is a dash of the identifier's own.
std::string unescaped(std::string_view name) {
    std::string text;
    while (!name.empty()) {
        unsigned value = 0;
        if (name.starts_with("\\x") && name.size() >= 4 &&
            std::from_chars(name.data() + 2, name.data() + 4, value, 16).ptr == name.data() + 4) {
            text += char(value);
            name.remove_prefix(4);
        } else {
            text += name.front();
            name.remove_prefix(1);
        }
    }
    return text;
}

// "app[-LAUNCHER]-ID-RANDOM.scope", "app[-LAUNCHER]-ID[@RANDOM].service",
// "snap.NAME.COMMAND-….scope"
std::string applicationOfUnit(std::string_view unit) {
    if (unit.starts_with("snap.") && unit.ends_with(".scope")) {
        unit.remove_prefix(5);
        return std::string(unit.substr(0, unit.find('.')));
    }
    if (!unit.starts_with("app-"))
        return {};
    if (unit.ends_with(".scope"))
        unit = unit.substr(0, unit.rfind('-'));
    else if (unit.ends_with(".service"))
        unit = unit.substr(0, std::min(unit.find('@'), unit.rfind('.')));
    else
        return {};
    const auto dash = unit.rfind('-');
    return dash == unit.npos ? std::string() : unescaped(unit.substr(dash + 1));
}

std::optional<ProcessMemory> readProcess(int proc, const std::string &process,
                                         std::uint64_t pageSize) {
    std::array<char, 4096> buffer;
    std::string_view statm = readAt(proc, process + "/statm", buffer);
    takeNumber(statm); // its whole address space
    const std::uint64_t resident = takeNumber(statm) * pageSize;
    const std::uint64_t shared = takeNumber(statm) * pageSize;
    if (resident == 0)
        return std::nullopt;
    ProcessMemory memory;
    memory.own = resident - std::min(shared, resident);
    memory.shared = std::min(shared, resident);
    memory.program = programOf(proc, process);
    memory.application = applicationOfGroup(readAt(proc, process + "/cgroup", buffer));
    return memory;
}

} // namespace

std::string applicationOfGroup(std::string_view cgroup) {
    // The innermost unit that is an application's; cgroup v1 has a line for each hierarchy.
    while (!cgroup.empty()) {
        const auto end = cgroup.find_last_of("/\n");
        std::string application = applicationOfUnit(cgroup.substr(end + 1));
        if (!application.empty() || end == cgroup.npos)
            return application;
        cgroup = cgroup.substr(0, end);
    }
    return {};
}

std::vector<ProcessMemory> readProcessMemory(const std::filesystem::path &proc,
                                             ProcessReading reading,
                                             const std::atomic<bool> *stop) {
    std::vector<ProcessMemory> processes;
    const std::unique_ptr<DIR, int (*)(DIR *)> folder(::opendir(proc.c_str()), ::closedir);
    if (!folder)
        return processes;
    const int descriptor = ::dirfd(folder.get());
    const auto pageSize = std::uint64_t(::sysconf(_SC_PAGESIZE));
    while (const dirent *const entry = ::readdir(folder.get())) {
        if (stop && *stop)
            break;
        const std::string name = entry->d_name;
        int number = 0;
        const char *const end = name.data() + name.size();
        if (std::from_chars(name.data(), end, number).ptr != end || number <= 0)
            continue;
        auto memory = readProcess(descriptor, name, pageSize);
        if (!memory)
            continue;
        memory->process = number;
        const auto share =
            reading == ProcessReading::Exact ? exactShare(descriptor, name) : std::nullopt;
        if (share) {
            memory->own = *share;
            memory->shared = 0;
            memory->isExact = true;
        }
        processes.push_back(std::move(*memory));
    }
    return processes;
}

} // namespace brightsweep
