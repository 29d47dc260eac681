#include "duplicates/ReadingThreads.h"

#include <algorithm>
#include <system_error>
#include <thread>
#include <vector>

namespace brightsweep {

namespace {

// More do not read faster from any disk, and each has a buffer of its own.
constexpr unsigned maximumThreads = 16;

} // namespace

unsigned readingThreads(unsigned wanted) {
    return std::clamp(wanted ? wanted : std::thread::hardware_concurrency(), 1u, maximumThreads);
}

void runOnThreads(unsigned threads, const std::function<void()> &work) {
    std::vector<std::thread> helpers;
    try {
        while (helpers.size() + 1 < threads)
            helpers.emplace_back(work);
    } catch (const std::system_error &) {
    }
    work();
    for (std::thread &helper : helpers)
        helper.join();
}

} // namespace brightsweep
