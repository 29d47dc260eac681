#include "foundation/SmallFile.h"
#include "support/ChildProcess.h"
#include "support/NeedsRoot.h"
#include "support/TestEnvironment.h"
#include "support/TestTree.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

// Nothing here reaches the machine's own caches: the tool looks below the test's system.
namespace brightsweep::test {
namespace {

class Purge : public testing::Test {
protected:
    Purge() : system(TestEnvironment::current().system()) { needRoot(); }

    void group(const std::string &path, bool offered, const char *inactive) {
        const std::string folder = "sys/fs/cgroup/" + path + "/";
        system.file(folder + "memory.stat",
                    std::string("anon 5\ninactive_file ") + inactive + "\n");
        system.file(folder + "memory.current", "5000\n");
        if (offered)
            system.file(folder + "memory.reclaim", "");
    }
    std::string reclaimed(const std::string &path) const {
        return *readSmallFile(system.path("sys/fs/cgroup/" + path + "/memory.reclaim"));
    }
    static ChildResult run(RunAs user) { return runProgram({BRIGHTSWEEP_PURGE}, {}, user); }

    TestTree system;
};

TEST_F(Purge, AsAdministratorDropsTheCaches) {
    auto result = run(RunAs::Caller);
    EXPECT_EQ(result.status, 1);
    EXPECT_NE(result.output.find("cannot be dropped"), std::string::npos);
    system.file("proc/sys/vm/drop_caches", "");
    result = run(RunAs::Caller);
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(*readSmallFile(system.path("proc/sys/vm/drop_caches")), "3");
    EXPECT_NE(result.output.find("dropped the page cache"), std::string::npos);
}

TEST_F(Purge, WithoutDelegationSaysSo) {
    system.file("proc/self/cgroup", "0::/user.slice/session-1.scope\n");
    group("user.slice/session-1.scope", true, "4096");
    const auto result = run(RunAs::Unprivileged);
    EXPECT_EQ(result.status, 1);
    EXPECT_NE(result.output.find("no control group is delegated"), std::string::npos);
    EXPECT_EQ(reclaimed("user.slice/session-1.scope"), "");
}

TEST_F(Purge, AsksOnlyBelowTheDelegatedGroup) {
    const std::string slice = "user.slice/user-65534.slice/";
    const std::string delegated = slice + "user@65534.service";
    group(slice + "session-1.scope", true, "4096");
    group(delegated, true, "4096");
    group(delegated + "/app.slice", true, "8192");
    group(delegated + "/app.slice/below.service", true, "1");
    group(delegated + "/old.slice", false, "4096");
    group(delegated + "/old.slice/new.service", true, "12288");
    group(delegated + "/empty.slice", true, "0");
    system.own("sys/fs/cgroup/" + delegated, unprivilegedUser);
    // From the session's own scope as from a service below.
    for (const char *cgroup : {"0::/user.slice/user-65534.slice/session-1.scope\n",
                               "0::/user.slice/user-65534.slice/user@65534.service/app.slice\n"}) {
        system.file("proc/self/cgroup", cgroup);
        for (const char *each : {"/app.slice", "/old.slice/new.service"})
            std::filesystem::resize_file(
                system.path("sys/fs/cgroup/" + delegated + each + "/memory.reclaim"), 0);
        const auto result = run(RunAs::Unprivileged);
        EXPECT_EQ(result.status, 0) << result.output;
        EXPECT_NE(result.output.find("2 control groups"), std::string::npos) << result.output;
        EXPECT_EQ(reclaimed(delegated + "/app.slice"), "8192 swappiness=0");
        EXPECT_EQ(reclaimed(delegated + "/old.slice/new.service"), "12288 swappiness=0");
        for (const std::string &untouched :
             {slice + "session-1.scope", delegated, delegated + "/app.slice/below.service",
              delegated + "/empty.slice"})
            EXPECT_EQ(reclaimed(untouched), "") << untouched;
    }
}

TEST_F(Purge, AKernelThatDoesNotOfferItIsAFailure) {
    const std::string delegated = "user.slice/user-65534.slice/user@65534.service";
    group(delegated + "/app.slice", false, "8192");
    system.own("sys/fs/cgroup/" + delegated, unprivilegedUser);
    const auto result = run(RunAs::Unprivileged);
    EXPECT_EQ(result.status, 1);
    EXPECT_NE(result.output.find("nothing was released"), std::string::npos);
}

} // namespace
} // namespace brightsweep::test
