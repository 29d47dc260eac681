// Measures the size tree on existing folders, as bench_make_tree builds them:
// `bench_diskusage RUNS DIR…`. For each folder the command line beside other tools, run in turn and
// warm, with medians; then what happens in the process.

#include "diskusage/RecordingCanvas.h"
#include "diskusage/W32AllDir.h"
#include "platform/LinuxPlatform.h"
#include "platform/Platform.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace brightsweep;
using Clock = std::chrono::steady_clock;

constexpr int framesPainted = 200;
constexpr int nodesFreed = 1'000'000;

double millisecondsSince(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

struct Tool {
    const char *name;
    std::vector<const char *> arguments; // the folder follows
    std::vector<double> milliseconds = {};
    long peakKilobytes = 0;
    bool works = true;

    double median() const {
        std::vector<double> sorted = milliseconds;
        std::sort(sorted.begin(), sorted.end());
        return sorted.empty() ? 0 : sorted[sorted.size() / 2];
    }
};

void run(Tool &tool, const char *folder) {
    std::vector<char *> arguments;
    for (const char *argument : tool.arguments)
        arguments.push_back(const_cast<char *>(argument));
    arguments.push_back(const_cast<char *>(folder));
    arguments.push_back(nullptr);
    const auto start = Clock::now();
    const pid_t child = ::fork();
    if (child == 0) {
        const int nowhere = ::open("/dev/null", O_WRONLY);
        ::dup2(nowhere, STDOUT_FILENO);
        ::dup2(nowhere, STDERR_FILENO);
        ::execvp(arguments[0], arguments.data());
        ::_exit(127);
    }
    int status = 0;
    struct rusage usage {};
    ::wait4(child, &status, 0, &usage);
    tool.works = WIFEXITED(status) && WEXITSTATUS(status) == 0;
    tool.milliseconds.push_back(millisecondsSince(start));
    tool.peakKilobytes = std::max(tool.peakKilobytes, usage.ru_maxrss);
}

std::uint64_t countNodes(AllDir &root) {
    std::uint64_t count = 0;
    std::vector<AllDir *> waiting{&root};
    while (!waiting.empty()) {
        AllDir *const node = waiting.back();
        waiting.pop_back();
        ++count;
        for (auto &slot : node->ppChildren())
            waiting.push_back(slot.load());
    }
    return count;
}

void compare(const char *folder, int runs) {
    std::vector<Tool> tools = {
        {"brightsweep-cli usage", {BRIGHTSWEEP_CLI, "--quiet", "usage"}},
        {"du -s --apparent-size", {"du", "-s", "--apparent-size"}},
        {"gdu -n -p", {"gdu", "-n", "-p"}},
        {"ncdu -0 -o /dev/null", {"ncdu", "-0", "-o", "/dev/null"}},
    };
    run(tools[0], folder); // warms the caches
    tools[0].milliseconds.clear();
    for (int i = 0; i < runs; ++i) {
        for (Tool &tool : tools)
            run(tool, folder);
    }
    std::printf("%s, medians of %d\n", folder, runs);
    for (const Tool &tool : tools) {
        if (!tool.works) {
            std::printf("  %-24s did not run\n", tool.name);
            continue;
        }
        std::printf("  %-24s %8.0f ms  %5.2f times ours  peak %6.1f MiB\n", tool.name,
                    tool.median(), tool.median() / tools[0].median(),
                    double(tool.peakKilobytes) / 1024);
    }
}

void measureInside(const std::string &folder) {
    W32AllDir *root = W32AllDir::newRoot();
    auto start = Clock::now();
    root->ListAllDir(folder, true);
    const double scanned = millisecondsSince(start);
    const std::uint64_t nodes = countNodes(*root);
    std::printf("  scan %.0f ms, %.2f us a directory, %llu directories, %.1f bytes each with its "
                "name\n",
                scanned, scanned * 1000 / double(nodes), static_cast<unsigned long long>(nodes),
                double(root->storage()) / double(nodes));

    RecordingCanvas canvas;
    const ChartCanvas::Use use(canvas);
    start = Clock::now();
    for (int i = 0; i < framesPainted; ++i) {
        canvas.clear();
        root->Paint(360, 0, 1, 0, false);
    }
    std::printf("  paint %.4f ms, %zu sectors\n", millisecondsSince(start) / framesPainted,
                canvas.sectors.size());
    start = Clock::now();
    root->FreeAll();
    std::printf("  free %.2f ms\n", millisecondsSince(start));

    root = W32AllDir::newRoot();
    std::thread scanner([&] { root->ListAllDir(folder, true); });
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    start = Clock::now();
    AllDir::bStopScan = true;
    scanner.join();
    std::printf("  stop answered in %.2f ms\n", millisecondsSince(start));
    AllDir::bStopScan = false;
    root->FreeAll();
}

void measureFreeing() {
    W32AllDir *const root = W32AllDir::newRoot();
    for (int i = 0; i < nodesFreed; ++i)
        root->newAllDir();
    const auto start = Clock::now();
    root->FreeAll();
    std::printf("free of %d nodes: %.2f ms\n", nodesFreed, millisecondsSince(start));
}

} // namespace

int main(int argc, char **argv) {
    const int runs = argc > 2 ? std::atoi(argv[1]) : 0;
    if (runs < 1) {
        std::fprintf(stderr, "usage: %s RUNS DIR...\n", argv[0]);
        return 2;
    }
    Platform::setCurrent(makeLinuxPlatform());
    for (int i = 2; i < argc; ++i) {
        compare(argv[i], runs);
        measureInside(std::string(argv[i]) + "/");
    }
    measureFreeing();
    return 0;
}
