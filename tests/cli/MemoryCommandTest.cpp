#include "support/CommandLine.h"
#include "support/TestEnvironment.h"
#include "support/TestTree.h"

#include <gtest/gtest.h>

namespace brightsweep::test {
namespace {

TEST(MemoryCommand, ShowsTheFigures) {
    const auto result = cli({"--json", "memory"});
    EXPECT_EQ(result.status, 0);
    const auto document = documentOf(result.output, "memory");
    const auto &memory = document.at("memory");
    for (const char *key :
         {"free", "inactive", "active", "wired", "used", "total", "pageIn", "pageOut", "faults",
          "available", "fileCache", "swapUsed", "swapTotal", "compressed"})
        EXPECT_TRUE(memory.at(key).is_number()) << key;
    const std::int64_t free = memory["free"];
    EXPECT_GT(free, 0);
    EXPECT_EQ(memory["used"], memory["total"].get<std::int64_t>() - free);
    EXPECT_TRUE(document.contains("pressure"));
    EXPECT_FALSE(document.contains("freed"));
    EXPECT_EQ(cli({"memory", "more"}).status, 2);
    const auto standIn = cli({"fr", "123"});
    EXPECT_EQ(standIn.status, 0);
    EXPECT_EQ(standIn.errors, "") << "what a release without a tool starts";
}

TEST(MemoryCommand, ReleaseRunsTheToolAndTellsTheTruth) {
    TestTree system(TestEnvironment::current().system());
    const auto install = [&](const char *script) {
        system.file("usr/bin/purge", script);
        system.mode("usr/bin/purge", 0755);
    };
    install("#!/bin/sh\necho what it did\n");
    auto result = cli({"memory", "--release", "--json"});
    EXPECT_EQ(result.status, 0);
    EXPECT_GE(documentOf(result.output, "memory")["freed"], 0);
    EXPECT_NE(result.errors.find("what it did"), std::string::npos);
    install("#!/bin/sh\nexit 1\n");
    result = cli({"memory", "--release"});
    EXPECT_EQ(result.status, 1);
    EXPECT_NE(result.output.find(" freed"), std::string::npos);
    EXPECT_NE(result.errors.find("released nothing"), std::string::npos);
    system.mode("usr/bin/purge", 0);
    EXPECT_EQ(cli({"memory", "--release"}).status, 1);
}

TEST(MemoryCommand, CtrlCEndsTheTool) {
    TestTree system(TestEnvironment::current().system());
    const auto started = TestEnvironment::current().work() / "started";
    system.file("usr/bin/purge", "#!/bin/sh\n: > " + started.native() + "\nexec sleep 600\n");
    system.mode("usr/bin/purge", 0755);
    RunningProgram program({BRIGHTSWEEP_CLI, "memory", "--release"});
    ASSERT_TRUE(eventually([&] { return std::filesystem::exists(started); }));
    program.signal(SIGINT);
    EXPECT_EQ(program.finish().status, 130);
}

} // namespace
} // namespace brightsweep::test
