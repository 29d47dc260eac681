#include "platform/linux/LinuxAdministratorRights.h"

#include "platform/Platform.h"
#include "support/NeedsRoot.h"
#include "support/Removals.h"
#include "support/TestEnvironment.h"
#include "support/TestTree.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <thread>

#include <sys/stat.h>
#include <sys/wait.h>

namespace brightsweep {
namespace {

using test::TestTree;
using testing::HasSubstr;

std::string textOf(const std::filesystem::path &file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

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
    ASSERT_EQ(rights.request().outcome, RightsOutcome::Granted);
    const RightsToken token = rights.token();
    EXPECT_TRUE(rights.accepts(token));
    EXPECT_FALSE(rights.accepts({}));
    EXPECT_EQ(rights.request().outcome, RightsOutcome::Granted);
    EXPECT_EQ(rights.token(), token); // no second process
    EXPECT_FALSE(rights.removeItems({}, removal, nullptr)[0].performed);
    EXPECT_TRUE(tree.exists("folder/item"));
    EXPECT_TRUE(rights.removeItems(token, removal, nullptr)[0].gone);
    EXPECT_FALSE(tree.exists("folder/item"));
    EXPECT_EQ(rights.release(), 0);
    EXPECT_FALSE(rights.accepts(token));
    EXPECT_EQ(rights.token(), RightsToken{});
}

// Neither a stop nor giving the rights up waits for the tool.
TEST(Rights, ARemovalEndsWhenItIsStoppedOrTheRightsAreGivenUp) {
    TestTree tree;
    for (int i = 0; i < 20; ++i)
        tree.deepChain("folder/item/" + std::to_string(i), 9'000);
    LinuxAdministratorRights rights;
    ASSERT_EQ(rights.request().outcome, RightsOutcome::Granted);
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
    ASSERT_EQ(rights.request().outcome, RightsOutcome::Granted);
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
    ASSERT_EQ(rights.request().outcome, RightsOutcome::Granted);
    EXPECT_FALSE(rights.removeItems(token, removal, nullptr)[0].performed); // the old token
    EXPECT_TRUE(rights.removeItems(rights.token(), removal, nullptr)[0].gone);
}

TEST(Rights, AProcessThatDiesOverARequestKeepsNobodyWaiting) {
    test::needRoot();
    TestTree tree;
    tree.file("folder/item");
    LinuxAdministratorRights rights;
    ASSERT_EQ(rights.request().outcome, RightsOutcome::Granted);
    const pid_t helper = childProcess();
    ASSERT_GT(helper, 0);
    ::kill(helper, SIGSTOP);
    const auto removal = removalOf(tree.path("folder"), "item");
    PrivilegedReply reply{true, true, {}};
    std::thread asking([&] { reply = rights.removeItems(rights.token(), removal, nullptr)[0]; });
    ::kill(helper, SIGKILL);
    asking.join();
    EXPECT_FALSE(reply.performed);
    EXPECT_TRUE(tree.exists("folder/item"));
    EXPECT_EQ(rights.token(), RightsToken{});
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
    ASSERT_EQ(rights.request().outcome, RightsOutcome::Granted);
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
    EXPECT_EQ(rightsOutcome(126, ""), RightsOutcome::Dismissed);
    EXPECT_EQ(rightsOutcome(127, "Error executing command as another user: Not authorized"),
              RightsOutcome::Denied);
    EXPECT_EQ(rightsOutcome(127, "Error executing x: No such file or directory"),
              RightsOutcome::Failed);
    EXPECT_EQ(rightsOutcome(1, "Not authorized"), RightsOutcome::Failed);
}

struct Scene {
    const char *name;
    bool granted;
    const char *words; // in the log
};

class Pkexec : public testing::TestWithParam<Scene> {};

// The real thing: a user without rights, pkexec, polkitd, rules, a bus of their own.
TEST_P(Pkexec, AsksTheRealAuthority) {
    test::needRoot();
    TestTree tree;
    std::vector<std::string> items;
    for (int i = 0; i < 5; ++i)
        items.push_back(
            tree.file("stage/home/protected/" + std::to_string(i) + "/file").parent_path());
    tree.file("stage/home/protected/kept");
    const auto before = tree.snapshot("stage/home/protected");
    const auto folder = tree.directory("stage");

    const auto bin = std::filesystem::path(BRIGHTSWEEP_TEST_PROBE).parent_path();
    std::vector<std::string> words = {BRIGHTSWEEP_TEST_STAGE,  GetParam().name, folder, bin,
                                      BRIGHTSWEEP_TEST_POLICY, "rights-probe"};
    words.insert(words.end(), items.begin(), items.end());
    std::vector<char *> arguments;
    for (std::string &word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    const pid_t stage = ::fork();
    if (stage == 0) {
        ::execv(arguments[0], arguments.data());
        ::_exit(127);
    }
    int status = 1;
    ::waitpid(stage, &status, 0);
    const std::string out = textOf(folder / "out");
    const std::string log = textOf(folder / "err");
    ASSERT_EQ(status, 0) << out << log;

    if (GetParam().granted) {
        EXPECT_THAT(out, HasSubstr("rights 1\nagain 1\n1 "));
        EXPECT_EQ(tree.snapshot("stage/home/protected").size(), 1u);
        EXPECT_TRUE(tree.exists("stage/home/protected/kept"));
        EXPECT_EQ(textOf(folder / "counted/count"), "asked\n"); // once for all items
    } else {
        EXPECT_THAT(out, HasSubstr("rights 0\n"));
        EXPECT_THAT(out, testing::Not(HasSubstr("\n1 ")));
        EXPECT_EQ(tree.snapshot("stage/home/protected"), before);
        EXPECT_THAT(log, HasSubstr("Copy Rights Unsuccessful: "));
        EXPECT_THAT(log, HasSubstr(GetParam().words)) << log;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Scenes, Pkexec,
    testing::Values(Scene{"granted", true, ""},
                    Scene{"denied", false, "Administrator rights: denied (status 127): "},
                    Scene{"noagent", false, "Administrator rights: no agent to ask the user"},
                    Scene{"dismissed", false, "Administrator rights: the dialog was dismissed"},
                    Scene{"nobus", false, "Administrator rights: no bus or no authority"}),
    [](const auto &scene) { return std::string(scene.param.name); });

} // namespace
} // namespace brightsweep
