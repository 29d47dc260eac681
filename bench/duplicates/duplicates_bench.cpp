// Compares the duplicate search with other programs on a corpus of its own, in one run:
//   bench_duplicates [--files N] [--small] [--runs N] [--seed N] [--cold] [--keep FOLDER]
// Prints the median wall time of each, its ratio to ours, processor time and peak memory.

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace {

struct Options {
    unsigned files = 13'000;
    unsigned runs = 7;
    unsigned seed = 1;
    bool small = false;
    bool cold = false;
    std::filesystem::path keep;
};

class Corpus {
public:
    Corpus(std::filesystem::path top, const Options &options)
        : m_top(std::move(top)), m_random(options.seed) {
        // Sizes are spread evenly over their powers, some 80 KB in the mean.
        std::uniform_real_distribution<double> power(6, options.small ? 12 : 19);
        while (m_count < options.files) {
            const auto size = std::size_t(std::exp2(power(m_random)));
            const unsigned kind = unsigned(m_random() % 10);
            const std::string data = bytes(size);
            write(data);
            if (kind >= 5 && kind < 8) { // copies
                write(data);
                if (kind == 7)
                    write(data);
            } else if (kind == 8) { // the same size only
                write(bytes(size));
            } else if (kind == 9) { // the same head with a different tail
                const std::size_t head = std::min<std::size_t>(size, 8192);
                write(data.substr(0, head) + bytes(size - head));
            }
        }
        std::printf("%u files, %.0f MB\n", m_count, double(m_bytes) / 1e6);
    }

private:
    std::string bytes(std::size_t size) {
        std::string data(size, '\0');
        for (std::size_t at = 0; at < size; at += 8) {
            const std::uint64_t value = m_random();
            std::memcpy(data.data() + at, &value, std::min<std::size_t>(8, size - at));
        }
        return data;
    }
    void write(const std::string &data) {
        const auto folder = m_top / std::to_string(m_random() % 97) / std::to_string(m_count % 13);
        std::filesystem::create_directories(folder);
        std::ofstream(folder / ("file" + std::to_string(m_count)), std::ios::binary) << data;
        ++m_count;
        m_bytes += data.size();
    }

    std::filesystem::path m_top;
    std::mt19937_64 m_random;
    unsigned m_count = 0;
    std::uint64_t m_bytes = 0;
};

struct Run {
    double seconds = 0;
    double processorSeconds = 0;
    long peakKilobytes = 0;
    bool failed = false;
};

Run run(std::vector<std::string> command) {
    std::vector<char *> arguments;
    for (std::string &argument : command)
        arguments.push_back(argument.data());
    arguments.push_back(nullptr);
    const auto begin = std::chrono::steady_clock::now();
    const pid_t child = ::fork();
    if (child == 0) {
        const int null = ::open("/dev/null", O_RDWR | O_CLOEXEC);
        ::dup2(null, STDOUT_FILENO);
        ::dup2(null, STDERR_FILENO);
        ::execvp(arguments[0], arguments.data());
        ::_exit(127);
    }
    int status = 0;
    rusage usage{};
    ::wait4(child, &status, 0, &usage);
    Run result;
    result.seconds =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    const auto seconds = [](const timeval &time) {
        return double(time.tv_sec) + double(time.tv_usec) / 1e6;
    };
    result.processorSeconds = seconds(usage.ru_utime) + seconds(usage.ru_stime);
    result.peakKilobytes = usage.ru_maxrss;
    result.failed = !WIFEXITED(status) || WEXITSTATUS(status) == 127;
    return result;
}

bool dropCaches() {
    ::sync();
    std::ofstream stream("/proc/sys/vm/drop_caches");
    stream << "3" << std::flush;
    return bool(stream);
}

double median(std::vector<double> values) {
    std::nth_element(values.begin(), values.begin() + std::ptrdiff_t(values.size() / 2),
                     values.end());
    return values[values.size() / 2];
}

void compare(const std::filesystem::path &top, const Options &options) {
    struct Program {
        const char *name;
        std::vector<std::string> command;
        std::vector<Run> runs;
    };
    std::vector<Program> programs = {
        {"brightsweep-cli", {BRIGHTSWEEP_CLI, "--json", "duplicates", top, "--limit", "0"}, {}},
        {"jdupes -rqm", {"jdupes", "-rqm", top}, {}},
        {"jdupes -rqmQ", {"jdupes", "-rqmQ", top}, {}},
        {"fdupes -rqm", {"fdupes", "-rqm", top}, {}},
        // It renames a file that it is told to write, which as root befalls /dev/null as well.
        {"rmlint", {"rmlint", "-o", "summary:stdout", "-T", "df", top}, {}},
    };
    // Taken in turn, so that other work on the machine meets all alike; the first turn warms up.
    for (unsigned turn = 0; turn <= options.runs; ++turn) {
        for (Program &program : programs) {
            if (options.cold && !dropCaches()) {
                std::printf("the caches cannot be dropped here\n");
                return;
            }
            const Run result = run(program.command);
            if (turn > 0)
                program.runs.push_back(result);
        }
    }
    const auto medianOf = [](const Program &program, double Run::*field) {
        std::vector<double> values;
        for (const Run &each : program.runs)
            values.push_back(each.*field);
        return median(values);
    };
    const double ours = medianOf(programs[0], &Run::seconds);
    const double oursProcessor = medianOf(programs[0], &Run::processorSeconds);
    std::printf("%-16s %9s %7s %12s %7s %9s\n", "", "median s", "ratio", "processor s", "ratio",
                "peak MB");
    for (const Program &program : programs) {
        if (program.runs.front().failed) {
            std::printf("%-16s not installed\n", program.name);
            continue;
        }
        long peak = 0;
        for (const Run &each : program.runs)
            peak = std::max(peak, each.peakKilobytes);
        const double wall = medianOf(program, &Run::seconds);
        const double processor = medianOf(program, &Run::processorSeconds);
        std::printf("%-16s %9.3f %7.2f %12.3f %7.2f %9.1f\n", program.name, wall, wall / ours,
                    processor, processor / oursProcessor, double(peak) / 1024);
    }
}

} // namespace

int main(int argc, char **argv) {
    Options options;
    for (int i = 1; i < argc; ++i) {
        const std::string_view argument = argv[i];
        const auto next = [&] { return i + 1 < argc ? argv[++i] : "0"; };
        if (argument == "--files")
            options.files = unsigned(std::atoi(next()));
        else if (argument == "--runs")
            options.runs = unsigned(std::max(1, std::atoi(next())));
        else if (argument == "--seed")
            options.seed = unsigned(std::atoi(next()));
        else if (argument == "--small")
            options.small = true;
        else if (argument == "--cold")
            options.cold = true;
        else if (argument == "--keep")
            options.keep = next();
    }
    std::string made = std::filesystem::temp_directory_path() / "brightsweep-bench-XXXXXX";
    std::filesystem::path top = options.keep;
    if (top.empty()) {
        if (!::mkdtemp(made.data()))
            return 1;
        top = made;
    }
    if (!std::filesystem::exists(top / "0"))
        Corpus(top, options);
    compare(top, options);
    if (options.keep.empty())
        std::filesystem::remove_all(top);
    return 0;
}
