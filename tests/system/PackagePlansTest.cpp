// Plans over a database of 2,000 packages against apt's own opinion. Only dry runs.

#include "helper/AptReports.h"
#include "platform/linux/PackageSource.h"
#include "support/SyntheticPackages.h"
#include "support/TestEnvironment.h"
#include "system/PrivateMachine.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace brightsweep {
namespace {

TEST(PackagePlans, AreWhatAptWouldDo) {
    const char *wanted = std::getenv("BRIGHTSWEEP_PLANS");
    const int plans = wanted ? std::atoi(wanted) : 40;
    const std::filesystem::path root = test::TestEnvironment::current().system();
    const unsigned seed = std::random_device()();
    SCOPED_TRACE("seed " + std::to_string(seed));
    const test::SyntheticPackages packages(root, 2000, 130, seed);
    for (const char *folder : {"apt/lists/partial", "cache/archives/partial", "etc"})
        std::filesystem::create_directories(root / folder);
    const auto simulate = [&](const std::vector<std::string> &names) {
        std::string command = "LC_ALL=C apt-get -s -q --no-auto-remove -o Debug::NoLocking=1 "
                              "-o Dir::State::status=" +
                              (root / "var/lib/dpkg/status").native() +
                              " -o Dir::State=" + (root / "apt").native() +
                              " -o Dir::Cache=" + (root / "cache").native() +
                              " -o Dir::Etc=" + (root / "etc").native() + " remove --";
        for (const std::string &name : names)
            command += ' ' + name;
        return test::shell(command + " 2>&1").output;
    };
    PackageSource source;
    std::mt19937 random(seed);
    std::size_t dragged = 0;
    for (int compared = 0; compared < plans;) {
        InstalledApplication application;
        application.key = packages.names[random() % packages.names.size()];
        const RemovalPlan plan = source.plan(application);
        if (plan.blocker == Blocker::TooMany)
            continue;
        ASSERT_EQ(plan.blocker, Blocker::None) << plan.reason;
        std::vector<std::string> set = {application.key};
        set.insert(set.end(), plan.also.begin(), plan.also.end());
        // Enough; and of some, no more than what apt would take along by itself.
        dragged += plan.also.size();
        const std::string ofSet = simulate(set);
        ASSERT_TRUE(helper::matchesSimulation(ofSet, set)) << application.key << '\n' << ofSet;
        if (compared++ % 4 != 0)
            continue;
        const std::string ofOne = simulate({application.key});
        // Its resolver gives up now and then where the whole set is no question to it.
        if (ofOne.find("pkgProblemResolver::Resolve generated breaks") != std::string::npos)
            continue;
        ASSERT_TRUE(helper::matchesSimulation(ofOne, set)) << application.key << '\n' << ofOne;
    }
    EXPECT_GT(dragged, 0u);
}

} // namespace
} // namespace brightsweep
