#include "support/ChildProcess.h"
#include "support/CleanableMachine.h"
#include "support/TestEnvironment.h"
#include "support/TestTree.h"

#include <QJsonDocument>

#include <gtest/gtest.h>

namespace brightsweep::test {
namespace {

TEST(MemoryCommand, ShowsTheFigures) {
    const auto result = runProgram({BRIGHTSWEEP_CLI, "--json", "memory"});
    EXPECT_EQ(result.status, 0);
    const QJsonObject document = documentOf(result.output, "memory");
    const QJsonObject memory = document[QStringLiteral("memory")].toObject();
    for (const char *key :
         {"free", "inactive", "active", "wired", "used", "total", "pageIn", "pageOut", "faults",
          "available", "fileCache", "swapUsed", "swapTotal", "compressed"})
        EXPECT_TRUE(memory[QLatin1String(key)].isDouble()) << key;
    EXPECT_GT(memory[QStringLiteral("free")].toInteger(), 0);
    EXPECT_EQ(memory[QStringLiteral("used")].toInteger(),
              memory[QStringLiteral("total")].toInteger() -
                  memory[QStringLiteral("free")].toInteger());
    EXPECT_TRUE(document.contains(QStringLiteral("pressure")));
    EXPECT_FALSE(document.contains(QStringLiteral("freed")));
    EXPECT_EQ(runProgram({BRIGHTSWEEP_CLI, "memory", "more"}).status, 2);
    const auto standIn = runProgram({BRIGHTSWEEP_CLI, "fr", "123"});
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
    auto result = runProgram({BRIGHTSWEEP_CLI, "memory", "--release", "--json"});
    EXPECT_EQ(result.status, 0);
    EXPECT_GE(documentOf(result.output, "memory")[QStringLiteral("freed")].toInteger(-1), 0);
    EXPECT_NE(result.errors.find("what it did"), std::string::npos);
    install("#!/bin/sh\nexit 1\n");
    result = runProgram({BRIGHTSWEEP_CLI, "memory", "--release"});
    EXPECT_EQ(result.status, 1);
    EXPECT_NE(result.output.find(" freed"), std::string::npos);
    EXPECT_NE(result.errors.find("released nothing"), std::string::npos);
    system.mode("usr/bin/purge", 0);
    EXPECT_EQ(runProgram({BRIGHTSWEEP_CLI, "memory", "--release"}).status, 1);
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
