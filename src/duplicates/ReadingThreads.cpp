#include "duplicates/ReadingThreads.h"

#include "duplicates/ContentReader.h"

#include <algorithm>
#include <deque>
#include <exception>
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

void runOnThreads(unsigned threads, FileOperations &files, std::atomic<bool> &stop,
                  const std::function<void(ContentReader &)> &work) {
    std::deque<ContentReader> readers;
    std::vector<std::thread> helpers;
    readers.emplace_back(files, &stop);
    std::atomic<bool> failed{false};
    std::exception_ptr failure;
    const auto run = [&](ContentReader &reader) {
        try {
            work(reader);
        } catch (...) {
            if (!failed.exchange(true))
                failure = std::current_exception();
            stop = true;
        }
    };
    try {
        helpers.reserve(threads);
        while (helpers.size() + 1 < threads) {
            ContentReader &reader = readers.emplace_back(files, &stop);
            helpers.emplace_back([&run, &reader] { run(reader); });
        }
    } catch (const std::exception &) {
        // Those that could be had do the work.
    }
    run(readers.front());
    for (std::thread &helper : helpers)
        helper.join();
    if (failed)
        std::rethrow_exception(failure);
}

} // namespace brightsweep
