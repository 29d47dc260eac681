#include "memory/ClearMemory.h"
#include "memory/cleanMemoryInfo.h"
#include "platform/Platform.h"
#include "support/ChildProcess.h"
#include "support/FakeDesktop.h"
#include "support/NeedsRoot.h"
#include "support/TestEnvironment.h"
#include "support/TestTree.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <array>
#include <csignal>
#include <set>

namespace brightsweep::test {
namespace {

class Memory : public testing::Test {
protected:
    Memory() {
        FakeFacts::install().value = [this](std::string_view name) -> Result<std::string> {
            if (unreadable.contains(name))
                return name == "hw.physmem" ? std::errc::permission_denied
                                            : std::errc::no_such_file_or_directory;
            const std::uint64_t number = name == "hw.pagesize" ? 16'384 : 1'000'000'000;
            return std::string(reinterpret_cast<const char *>(&number), sizeof number);
        };
        Platform::current().memory.reset(memory);
    }
    // A release tool of the system's that runs this script.
    void install(const std::string &script) {
        TestTree tree(TestEnvironment::current().system());
        tree.file("usr/bin/purge", "#!/bin/sh\n" + script + "\n");
        tree.mode("usr/bin/purge", 0755);
    }
    static bool ends(ClearMemory &clear) {
        return eventually([&] { return !clear.isRuning(); });
    }

    std::set<std::string_view> unreadable;
    FakeMemory *memory = new FakeMemory;
};

TEST_F(Memory, ReadsPagesAsBytes) {
    MemoryInfo info;
    EXPECT_EQ(getMemoryInfo(nullptr), -1);
    EXPECT_EQ(getMemoryInfo(&info), 0);
    const std::uint64_t pages[] = {info.freeMem, info.inactiveMem, info.activeMem, info.wiredMem,
                                   info.pageIn,  info.pageOut,     info.vMem};
    for (std::size_t i = 0; i < std::size(pages); ++i)
        EXPECT_EQ(pages[i] / 16'384, std::to_array({100u, 50u, 30u, 20u, 7u, 8u, 9u})[i]) << i;
    EXPECT_EQ(info.totalMem, 1'000'000'000u);
    EXPECT_EQ(info.usedMem, info.totalMem - info.freeMem);
    EXPECT_EQ(info.swap, 0u);
    const cleanMemoryInfo words(info);
    EXPECT_EQ(words.freeMem, QStringLiteral("1.56 MB"));
    EXPECT_EQ(words.totalMem, QStringLiteral("953.67 MB"));
}

TEST_F(Memory, KeepsWhatCannotBeRead) {
    MemoryInfo info;
    info.totalMem = 500;
    info.freeMem = 100;
    info.activeMem = 77;
    unreadable = {"hw.pagesize", "hw.memsize"};
    memory->figures = std::errc::io_error;
    EXPECT_EQ(getMemoryInfo(&info), ENOENT);
    EXPECT_EQ(info.usedMem, 400u);
    EXPECT_EQ(info.activeMem, 77u);
    // The usual page size stands in, and the last failure is the one told.
    memory->figures = MemoryCounts{.free = 2};
    unreadable = {"hw.pagesize", "hw.physmem"};
    EXPECT_EQ(getMemoryInfo(&info), EACCES);
    EXPECT_EQ(info.freeMem, 8192u);
}

TEST_F(Memory, OneReleaseAtATime) {
    install("read line < \"$FIFO\"; exit 7");
    TestTree tree;
    const auto fifo = tree.fifo("fifo");
    ::setenv("FIFO", fifo.c_str(), 1);
    ClearMemory clear;
    EXPECT_FALSE(clear.isRuning());
    EXPECT_EQ(clear.clearMemory(), 0);
    EXPECT_TRUE(clear.isRuning());
    EXPECT_EQ(clear.clearMemory(), 1);
    EXPECT_EQ(clear.terminationStatus(), std::nullopt);
    tree.file("fifo", "go\n");
    EXPECT_TRUE(ends(clear));
    EXPECT_EQ(clear.terminationStatus(), std::nullopt) << "nobody has collected it";
    // Starting anew collects, also when the end was not seen before.
    EXPECT_EQ(clear.clearMemory(), 0);
    EXPECT_EQ(clear.terminationStatus(), 7);
    clear.stop();
    EXPECT_TRUE(ends(clear));
    EXPECT_EQ(clear.getMemoryInfo(nullptr), 0);
    EXPECT_EQ(clear.terminationStatus(), 128 + SIGTERM);
    clear.stop();
    ::unsetenv("FIFO");
}

TEST_F(Memory, ChoosesTheSystemsToolFirst) {
    ClearMemory clear;
    EXPECT_EQ(std::filesystem::path(clear.releaseCommand()[0]).filename(), "purge");
    EXPECT_NE(clear.releaseCommand()[0].find("/bin/purge"), std::string::npos)
        << "the program's own, which is built beside the tests";
    install("exit 0");
    EXPECT_EQ(clear.releaseCommand(),
              std::vector<std::string>{TestEnvironment::current().system() / "usr/bin/purge"});
#ifndef __SANITIZE_THREAD__ // with it vfork() is fork(), and no error comes back
    ::chmod((TestEnvironment::current().system() / "usr/bin/purge").c_str(), 0);
    EXPECT_EQ(clear.clearMemory(), -1);
    EXPECT_FALSE(clear.isRuning());
#endif
}

TEST_F(Memory, WithoutAToolTheProgramStandsInForIt) {
    needRoot();
    EXPECT_EQ(0, runInChild([] {
                  ClearMemory clear;
                  if (!enterPrivateMounts() || !bindMount("/dev/null", clear.releaseCommand()[0]))
                      return 1;
                  clear.getMemoryInfo(nullptr);
                  const auto command = clear.releaseCommand();
                  return command.size() == 3 && command[1] == "fr" &&
                                 command[2] == std::to_string((100 + 50) * 16'384)
                             ? 0
                             : 2;
              }));
}

} // namespace
} // namespace brightsweep::test
