#include "support/ChildProcess.h"
#include "support/CleanableMachine.h"
#include "support/NeedsRoot.h"
#include "support/TestEnvironment.h"
#include "support/TestTree.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>

namespace brightsweep::test {
namespace {

using testing::HasSubstr;
using testing::Not;

constexpr char log[] = ".local/share/Brightsweep/norvex.log";

// The form of the program for terminals, whatever display the tests are run on.
class Program : public testing::Test {
protected:
    void SetUp() override {
        for (const char *variable : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
            ::unsetenv(variable);
    }
};

TEST_F(Program, FirstRunMakesItsFolderAndTheSecondLogsThere) {
    test::needRoot();
    CleanableMachine machine;
    TestTree &home = machine.home;
    const auto before = machine.state();
    const auto first = runProgram({BRIGHTSWEEP_PROGRAM});
    EXPECT_EQ(first.status, 0);
    EXPECT_EQ(first.errors, "");
    EXPECT_THAT(first.output, testing::StartsWith("System Caches"));
    EXPECT_TRUE(home.exists(".local/share/Brightsweep"));
    EXPECT_FALSE(home.exists(log));
    // In a locale that Qt has something to say about.
    const auto second = runProgram({BRIGHTSWEEP_PROGRAM}, {{"LC_ALL", "C"}});
    EXPECT_EQ(second.status, 0);
    EXPECT_EQ(second.errors, "");
    EXPECT_EQ(second.output, first.output);
    EXPECT_THAT(textOf(home.path(log)), HasSubstr("hardware info\n"));

    const auto lost = runProgram({BRIGHTSWEEP_PROGRAM}, {{"DISPLAY", ":4711"}});
    EXPECT_EQ(lost.status, 1);
    EXPECT_EQ(lost.errors, "brightsweep: cannot reach the display (DISPLAY=:4711)\n");

    // With a folder, a command to free memory is logged there.
    EXPECT_THAT(runProgram({BRIGHTSWEEP_PROGRAM, "x", "fr", "1"}).errors,
                Not(HasSubstr("freeMemoy")));
    EXPECT_THAT(textOf(home.path(log)), HasSubstr("freeMemoy size=1\n"));

    // The largest log that is kept, and the smallest that makes room for a new one.
    home.sparseFile(log, 20'971'520);
    EXPECT_EQ(runProgram({BRIGHTSWEEP_PROGRAM, "fr", "1024"}).status, 0);
    EXPECT_GT(std::filesystem::file_size(home.path(log)), 20'971'520u);
    EXPECT_THAT(textOf(home.path(log)), Not(HasSubstr("hardware info\n")));
    home.sparseFile(log, 20'971'521);
    EXPECT_EQ(runProgram({BRIGHTSWEEP_PROGRAM, "fr", "1024"}).status, 0);
    EXPECT_THAT(textOf(home.path(log)), HasSubstr("hardware info\n"));
    EXPECT_THAT(textOf(home.path(log)), HasSubstr("freeMemoy size=1024\n"));
    EXPECT_THAT(changes(before, machine.state()), testing::IsEmpty());
}

TEST_F(Program, OnlyARegularFileIsALog) {
    CleanableMachine machine;
    machine.home.fifo(log);
    // More than a pipe holds.
    for (int i = 0; i < 300; ++i)
        machine.home.file(".cache/" + std::string(200, 'x') + std::to_string(i) + "/f");
    for (const char *program : {BRIGHTSWEEP_CLI, BRIGHTSWEEP_PROGRAM}) {
        const auto result = runProgram({program, "duplicates", machine.home.top(), "--limit", "0"});
        EXPECT_EQ(result.status, 0) << program;
        EXPECT_NE(result.output, "") << program;
    }
    EXPECT_TRUE(std::filesystem::is_fifo(machine.home.path(log)));
    machine.home.link(".local/share/Brightsweep/other", "/dev/null");
    std::filesystem::rename(machine.home.path(".local/share/Brightsweep/other"),
                            machine.home.path(log));
    EXPECT_THAT(runProgram({BRIGHTSWEEP_PROGRAM, "fr", "1024"}).errors,
                HasSubstr("freeMemoy size=1024\n"));
}

TEST_F(Program, MeetsClosedDescriptorsAndALimitOnFilesAsErrors) {
    const auto statusOf = [](const char *surroundings) {
        return runProgram({"/bin/sh", "-c",
                           std::string(surroundings) + "; exec " BRIGHTSWEEP_CLI " settings"})
            .status;
    };
    for (const char *closing : {"exec >&-", "exec <&- >&-", "exec <&- >&- 2>&-"})
        EXPECT_EQ(statusOf(closing), 1) << closing;
#ifndef __SANITIZE_THREAD__ // it writes before the program can take the signal away
    EXPECT_EQ(statusOf("ulimit -f 0"), 0);
#endif
}

TEST_F(Program, WorksWithoutAThreadToBeHad) {
    test::needRoot();
    CleanableMachine machine;
    std::filesystem::permissions(TestEnvironment::current().root(), std::filesystem::perms(0755));
    for (const char *copy : {"a", "b"})
        machine.system.file(std::string(copy) + "/file", "the same");
    const std::string top = machine.system.top();
    for (const std::vector<std::string> &words :
         {std::vector<std::string>{"duplicates", top, "--limit", "0"},
          {"usage", top},
          {"usage", top, "--list"},
          {"scan", "--category", "0"},
          {"clean", "--category", "0"}}) {
        std::vector<std::string> command = {BRIGHTSWEEP_CLI};
        command.insert(command.end(), words.begin(), words.end());
        const auto usual = runProgram(command, {}, RunAs::Unprivileged);
        const auto alone = runProgram(command, {}, RunAs::Threadless);
        EXPECT_EQ(alone.status, usual.status) << words[0] << alone.errors;
        EXPECT_EQ(alone.output, usual.output) << words[0];
        EXPECT_EQ(alone.errors, usual.errors) << words[0];
    }
}

// Sanitizers reserve more than any limit.
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
// With every amount of memory that it can be loaded with.
TEST_F(Program, SaysSoWhereThereIsNotEnoughMemory) {
    TestTree tree;
    for (int i = 0; i < 3000; ++i)
        tree.directory(std::to_string(i % 60) + "/" + std::string(200, 'x') + std::to_string(i));
    constexpr int notLoaded = 127;
    unsigned told = 0;
    int status = 1;
    for (unsigned kilobytes = 30'000; status != 0 && kilobytes < 1'000'000; kilobytes += 500) {
        const auto result =
            runProgram({"/bin/sh", "-c", "ulimit -v $1; exec \"$2\" usage \"$3\" --list", "sh",
                        std::to_string(kilobytes), BRIGHTSWEEP_CLI, tree.top()});
        status = result.status;
        if (status == notLoaded || status == 0)
            continue;
        ASSERT_EQ(status, 1) << kilobytes << result.errors;
        EXPECT_EQ(result.output, "");
        told += result.errors == "There is not enough memory.\n";
    }
    EXPECT_EQ(status, 0);
    EXPECT_GT(told, 0u);
}
#endif

// The first log asks for the volumes, whose watch is a thread of its own.
TEST_F(Program, TheWatchOfTheVolumesIsNeverTakenForTheMainThread) {
    CleanableMachine machine;
    machine.home.directory(".local/share/Brightsweep");
    for (int i = 0; i < 40; ++i) {
        std::filesystem::remove(machine.home.path(log));
        EXPECT_EQ(runProgram({BRIGHTSWEEP_CLI, "--version"}).errors, "");
        EXPECT_TRUE(machine.home.exists(log));
    }
}

} // namespace
} // namespace brightsweep::test
