#include "support/ChildProcess.h"
#include "support/CleanableMachine.h"
#include "support/TestEnvironment.h"
#include "system/PrivateMachine.h"
#include "system/SilentServer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <fstream>
#include <map>
#include <memory>

namespace brightsweep::test {
namespace {

using Manner = SilentServer::Manner;
using testing::HasSubstr;

// True while a thread of the process, or of a child of its, waits for a file system in user space.
bool waitsForServer(pid_t process) {
    const std::filesystem::path task =
        "/proc/" + std::to_string(process) + "/task/" + std::to_string(process);
    std::ifstream children(task / "children");
    for (pid_t child = 0; children >> child;) {
        if (waitsForServer(child))
            return true;
    }
    std::error_code gone;
    for (const auto &thread : std::filesystem::directory_iterator(task.parent_path(), gone)) {
        std::string place;
        std::ifstream(thread.path() / "wchan") >> place;
        // The last: for another that looks the same name up.
        if (place == "request_wait_answer" || place.starts_with("fuse_") ||
            place == "d_alloc_parallel")
            return true;
    }
    return false;
}

class Interruption : public testing::TestWithParam<Manner> {
protected:
    Interruption() {
        PrivateMachine::current();
        machine.home.sparseFile("Measured/known", 5000);
        const auto place = machine.home.directory("Measured/a/dead");
        before = machine.state();
        server = std::make_unique<SilentServer>(place, GetParam());
    }

    ChildResult interrupt(std::vector<std::string> words, const std::vector<int> &signals) {
        words.insert(words.begin(), BRIGHTSWEEP_CLI);
        // No walk of the cleaner enters a mount; but the whole folder may lie in a dead one.
        RunningProgram program(words,
                               {{"XDG_CACHE_HOME", machine.home.path("Measured/a/dead/caches")}});
        EXPECT_TRUE(eventually([&] { return waitsForServer(program.process()); })) << words[1];
        for (const int number : signals)
            program.signal(number);
        return program.finish();
    }

    CleanableMachine machine;
    std::map<std::string, std::string> before;
    std::unique_ptr<SilentServer> server;
};

TEST_P(Interruption, IsAnsweredWhateverTheWorkWaitsFor) {
    const std::string folder = machine.home.path("Measured");
    const struct {
        std::vector<std::string> words;
        std::vector<int> signals;
        int status;
        const char *output;
    } rows[] = {
        {{"usage", folder}, {SIGINT}, 130, "5.00 KB  /"},
        {{"usage", folder, "--list"}, {SIGTERM}, 143, "5.00 KB  known"},
        {{"--json", "usage", folder, "--rings"}, {SIGHUP}, 129, "\"interrupted\":true"},
        {{"duplicates", folder}, {SIGINT}, 130, "No duplicates.\n"},
        // Twice, or where not even the work could begin: at once, with nothing.
        {{"usage", folder}, {SIGINT, SIGTERM}, 143, ""},
        {{"usage", folder + "/a/dead"}, {SIGINT}, 130, ""},
        {{"scan", "--category", "1"}, {SIGTERM}, 143, ""},
        {{"clean", "--category", "1", "--apply"}, {SIGHUP}, 129, ""},
    };
    for (const auto &row : rows) {
        const auto result = interrupt(row.words, row.signals);
        EXPECT_EQ(result.status, row.status) << testing::PrintToString(row.words);
        EXPECT_THAT(result.output, HasSubstr(row.output));
        EXPECT_EQ(result.output.empty(), !*row.output);
    }
    server.reset();
    EXPECT_THAT(changes(before, machine.state()), testing::IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Servers, Interruption,
                         testing::Values(Manner::NeverReads, Manner::Swallows));

} // namespace
} // namespace brightsweep::test
