#include "platform/linux/LinuxAdministratorRights.h"

#include "platform/Platform.h"
#include "support/NeedsRoot.h"
#include "support/Removals.h"
#include "support/TestEnvironment.h"
#include "support/TestTree.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <thread>

#include <sys/stat.h>
#include <sys/wait.h>

namespace brightsweep {
namespace {

using test::TestTree;
using test::textOf;

PrivilegedRemoval removalOf(const std::filesystem::path &folder, const std::string &name) {
    FileOperations &files = *Platform::current().files;
    const auto target = test::targetIn(folder, name);
    return {target.root, {}, {{name, files.openItem(target).value_or({}).attributes}}};
}

// The one child of this process.
pid_t childProcess() {
    const auto self = std::to_string(::getpid());
    return std::atoi(textOf("/proc/self/task/" + self + "/children").c_str());
}

TEST(Rights, RootGetsThemWithoutBeingAsked) {
    test::needRoot();
    TestTree tree;
    tree.file("folder/item");
    LinuxAdministratorRights rights;
    const auto removal = removalOf(tree.path("folder"), "item");
    EXPECT_FALSE(rights.removeItems({}, removal, nullptr)[0].performed);
    ASSERT_EQ(rights.request(RightsPurpose::Files).outcome, RightsOutcome::Granted);
    const RightsToken token = rights.token();
    EXPECT_TRUE(rights.accepts(token));
    EXPECT_FALSE(rights.accepts({}));
    EXPECT_EQ(rights.request(RightsPurpose::Files).outcome, RightsOutcome::Granted);
    EXPECT_EQ(rights.token(), token); // no second process
    EXPECT_EQ(rights.request(RightsPurpose::FilesAndPackages).outcome, RightsOutcome::Granted);
    EXPECT_FALSE(rights.accepts(token)); // another question, another process
    const RightsToken wider = rights.token();
    EXPECT_EQ(rights.request(RightsPurpose::Files).outcome, RightsOutcome::Granted);
    EXPECT_EQ(rights.token(), wider);
    EXPECT_FALSE(rights.removeItems({}, removal, nullptr)[0].performed);
    EXPECT_TRUE(tree.exists("folder/item"));
    EXPECT_TRUE(rights.removeItems(wider, removal, nullptr)[0].gone);
    EXPECT_FALSE(tree.exists("folder/item"));
    EXPECT_EQ(rights.release(), 0);
    EXPECT_FALSE(rights.accepts(wider));
    EXPECT_EQ(rights.token(), RightsToken{});
}

// Neither a stop nor giving the rights up waits for the tool.
TEST(Rights, ARemovalEndsWhenItIsStoppedOrTheRightsAreGivenUp) {
    test::needRoot();
    TestTree tree;
    for (int i = 0; i < 5; ++i)
        tree.deepChain("folder/item/" + std::to_string(i), 9'000);
    LinuxAdministratorRights rights;
    ASSERT_EQ(rights.request(RightsPurpose::Files).outcome, RightsOutcome::Granted);
    const RightsToken token = rights.token();
    std::atomic<bool> stop{true};
    const auto stopped = rights.removeItems(token, removalOf(tree.path("folder"), "item"), &stop);
    EXPECT_EQ(stopped[0].output, "stopped");
    EXPECT_TRUE(rights.accepts(token));

    std::atomic<bool> asked{false};
    PrivilegedReply reply{true, true, {}};
    std::thread asking([&] {
        const auto removal = removalOf(tree.path("folder"), "item");
        asked = true;
        reply = rights.removeItems(token, removal, nullptr)[0];
    });
    while (!asked)
        std::this_thread::yield();
    // Answered whatever the request is doing.
    EXPECT_TRUE(rights.accepts(token));
    rights.release();
    EXPECT_FALSE(rights.accepts(token));
    asking.join();
    EXPECT_FALSE(reply.gone);
    EXPECT_TRUE(tree.exists("folder/item"));
}

TEST(Rights, AreLostWithTheirProcessAndCanBeGotAnew) {
    test::needRoot();
    TestTree tree;
    tree.file("folder/item");
    LinuxAdministratorRights rights;
    ASSERT_EQ(rights.request(RightsPurpose::Files).outcome, RightsOutcome::Granted);
    const RightsToken token = rights.token();
    const pid_t helper = childProcess();
    ASSERT_GT(helper, 0);
    ::kill(helper, SIGKILL);
    siginfo_t info;
    ASSERT_EQ(::waitid(P_PID, id_t(helper), &info, WEXITED | WNOWAIT), 0);
    EXPECT_FALSE(rights.accepts(token));
    const auto removal = removalOf(tree.path("folder"), "item");
    EXPECT_FALSE(rights.removeItems(token, removal, nullptr)[0].performed);
    EXPECT_TRUE(tree.exists("folder/item"));
    EXPECT_EQ(rights.token(), RightsToken{});
    ASSERT_EQ(rights.request(RightsPurpose::Files).outcome, RightsOutcome::Granted);
    EXPECT_FALSE(rights.removeItems(token, removal, nullptr)[0].performed); // the old token
    EXPECT_TRUE(rights.removeItems(rights.token(), removal, nullptr)[0].gone);
}

TEST(Rights, ServeSixThreads) {
    test::needRoot();
    TestTree tree;
    constexpr int threads = 6;
    constexpr int items = 15;
    for (int i = 0; i < threads * items; ++i)
        tree.file("folder/" + std::to_string(i) + "/file");
    tree.file("folder/kept");
    LinuxAdministratorRights rights;
    ASSERT_EQ(rights.request(RightsPurpose::Files).outcome, RightsOutcome::Granted);
    std::atomic<int> gone{0};
    std::vector<std::thread> workers;
    for (int thread = 0; thread < threads; ++thread) {
        workers.emplace_back([&, thread] {
            for (int i = 0; i < items; ++i) {
                const auto removal =
                    removalOf(tree.path("folder"), std::to_string(thread * items + i));
                gone += rights.removeItems(rights.token(), removal, nullptr)[0].gone ? 1 : 0;
            }
        });
    }
    for (std::thread &worker : workers)
        worker.join();
    EXPECT_EQ(gone, threads * items);
    EXPECT_EQ(tree.snapshot("folder").size(), 1u);
}

TEST(Rights, OutcomesAreToldApartByStatusAndWords) {
    const std::string error = "Error executing command as another user: ";
    EXPECT_EQ(rightsOutcome(126, error + "Request dismissed"), RightsOutcome::Dismissed);
    EXPECT_EQ(rightsOutcome(127, error + "Not authorized\n\nreported"), RightsOutcome::Denied);
    EXPECT_EQ(rightsOutcome(127, error + "No authentication agent found."), RightsOutcome::NoAgent);
    EXPECT_EQ(rightsOutcome(127, "Error getting authority: Could not connect: No such file"),
              RightsOutcome::NoBus);
    EXPECT_EQ(rightsOutcome(127, "Error executing x: No such file"), RightsOutcome::Failed);
    EXPECT_EQ(rightsOutcome(1, "Not authorized"), RightsOutcome::Failed);
}

} // namespace
} // namespace brightsweep
