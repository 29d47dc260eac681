// Listing the applications of a system of 2,000 packages, 130 of them with an entry, and planning
// the removal of each: `bench_packages [FOLDER]`, which is made and removed. Limits: 100 ms for the
// listing once the files are in memory, 300 ms for a plan on average.

#include "platform/linux/PackageSource.h"
#include "support/SyntheticPackages.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>

namespace {

using namespace brightsweep;

constexpr unsigned packageCount = 2000;
constexpr unsigned applicationCount = 130;
constexpr int runs = 9;
constexpr double listingLimit = 100; // milliseconds
constexpr double planLimit = 300;

template <typename Work>
double millisecondsOf(Work work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
        .count();
}

} // namespace

int main(int argc, char **argv) {
    const std::filesystem::path root =
        argc > 1 ? argv[1] : std::filesystem::temp_directory_path() / "brightsweep-bench-packages";
    if (std::filesystem::exists(root)) {
        std::fprintf(stderr, "%s is there already\n", root.c_str());
        return 2;
    }
    const test::SyntheticPackages packages(root, packageCount, applicationCount, 1);
    ::setenv("BRIGHTSWEEP_SYSTEM_ROOT", root.c_str(), 1);
    std::vector<InstalledApplication> listed;
    std::vector<double> listings;
    for (int run = 0; run < runs; ++run) {
        // A source of its own reads everything; the first one warms the files.
        PackageSource source;
        listings.push_back(millisecondsOf([&] {
            if (auto found = source.applications())
                listed = *std::move(found);
        }));
    }
    PackageSource source;
    source.applications();
    const double again = millisecondsOf([&] { source.applications(); });
    std::vector<double> plans;
    for (const InstalledApplication &application : listed)
        plans.push_back(millisecondsOf([&] { source.plan(application); }));
    std::sort(listings.begin() + 1, listings.end());
    double sum = 0;
    for (const double plan : plans)
        sum += plan;
    const double listing = listings[1 + (listings.size() - 1) / 2];
    const double mean = plans.empty() ? 0 : sum / double(plans.size());
    std::printf("%zu applications of %u packages\n", listed.size(), packageCount);
    std::printf("listing: first %.0f ms, then %.0f ms (limit %.0f), %.0f ms again\n", listings[0],
                listing, listingLimit, again);
    std::printf("plan: %.0f ms on average (limit %.0f), %.0f ms at most\n", mean, planLimit,
                plans.empty() ? 0 : *std::max_element(plans.begin(), plans.end()));
    std::filesystem::remove_all(root);
    return listed.size() == applicationCount && listing <= listingLimit && mean <= planLimit ? 0
                                                                                             : 1;
}
