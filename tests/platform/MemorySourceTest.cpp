#include "platform/MemorySource.h"

#include "platform/Platform.h"
#include "platform/linux/LinuxMemorySource.h"
#include "platform/linux/LinuxProcessMemory.h"
#include "support/TestTree.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <algorithm>

namespace brightsweep::test {
namespace {

constexpr const char meminfo[] = "MemTotal:        8000000 kB\n"
                                 "MemFree:            4096 kB\n"
                                 "MemAvailable:       6000 kB\n"
                                 "Active(anon):    9999999 kB\n"
                                 "Active:             8192 kB\n"
                                 "Inactive(file):  9999999 kB\n"
                                 "Inactive:          16384 kB\n"
                                 "Unevictable:         400 kB\n"
                                 "SUnreclaim:           40 kB\n"
                                 "KernelStack:           4 kB\n"
                                 "PageTables:            8 kB\n"
                                 "SecPageTables:   9999999 kB\n"
                                 "HugePages_Total:       0\n";
constexpr const char vmstat[] = "pgpgin_other 7\npgpgin 400\npgpgout 84\npgfault 12345\n"
                                "pgmajfault 5\n";

TEST(MemorySource, CountsArePagesWhateverUnitTheKernelUses) {
    const auto counts = LinuxMemorySource::parse(meminfo, vmstat, 4096);
    ASSERT_TRUE(counts);
    EXPECT_EQ(*counts, (MemoryCounts{1024, 4096, 2048, 113, 100, 21, 12345}));
    const auto large = LinuxMemorySource::parse(meminfo, vmstat, 65536);
    ASSERT_TRUE(large);
    EXPECT_EQ(large->free, 64u);
    EXPECT_EQ(large->faults, 12345u);
    const auto available = LinuxMemorySource::parseAvailable(meminfo);
    ASSERT_TRUE(available);
    EXPECT_EQ(*available, 6'144'000u);
}

TEST(MemorySource, MissingFiguresAreToldFromZero) {
    EXPECT_FALSE(LinuxMemorySource::parse("", "", 4096));
    EXPECT_FALSE(LinuxMemorySource::parse("MemFree: 1 kB\nActive: x kB\nInactive:\n", "", 4096));
    EXPECT_FALSE(LinuxMemorySource::parseAvailable("MemFree: 1 kB\n"));
    const auto bare =
        LinuxMemorySource::parse("MemFree: 4 kB\nActive: 0 kB\nInactive: 8 kB", "", 4096);
    ASSERT_TRUE(bare);
    EXPECT_EQ(*bare, (MemoryCounts{1, 2, 0, 0, 0, 0, 0}));
}

TEST(MemorySource, ThisMachineHasMemory) {
    MemorySource &memory = *Platform::current().memory;
    const auto first = memory.counts();
    ASSERT_TRUE(first);
    EXPECT_GT(first->free, 0u);
    EXPECT_GT(first->wired, 0u);
    const auto second = memory.counts();
    ASSERT_TRUE(second);
    EXPECT_GE(second->faults, first->faults);
    const auto available = memory.availableBytes();
    ASSERT_TRUE(available);
    EXPECT_GT(*available, 0u);
    for (const ProcessReading reading : {ProcessReading::Quick, ProcessReading::Exact}) {
        const auto all = memory.processes(reading, nullptr);
        const auto own = std::find_if(all.begin(), all.end(),
                                      [](const auto &each) { return each.process == ::getpid(); });
        ASSERT_NE(own, all.end());
        EXPECT_EQ(own->program, "test_platform");
        EXPECT_EQ(own->isExact, reading == ProcessReading::Exact);
        EXPECT_GT(own->own, 100'000u);
    }
}

TEST(MemorySource, DetailsAreWhatTheKernelSays) {
    TestTree tree;
    tree.file("proc/meminfo", "MemAvailable: 100 kB\nBuffers: 1 kB\nCached: 50 kB\n"
                              "SwapCached: 999 kB\nShmem: 11 kB\nSReclaimable: 10 kB\n"
                              "SwapTotal: 70 kB\nSwapFree: 30 kB\nZswap: 2 kB\nZswapped: 9 kB\n");
    LinuxMemorySource source(tree.path());
    EXPECT_EQ(*source.details(), (MemoryDetails{102'400, 51'200, 40'960, 71'680, 2'048, {}}));
    tree.file("sys/block/zram0/mm_stat", "  900000  300000   310000  0  320000 1 0 0\n");
    tree.file("sys/block/zram1/mm_stat", "damaged\n");
    tree.file("proc/pressure/memory", "some avg10=12.50 avg60=0.00 avg300=0.00 total=1\n"
                                      "full avg10=99.00 avg60=0.00 avg300=0.00 total=1\n");
    EXPECT_EQ(source.details()->compressed, 312'048u);
    EXPECT_EQ(source.details()->pressure, 12.5);
}

TEST(MemorySource, ProcessesAreReadWhateverTheirNames) {
    TestTree tree;
    const auto process = [&](const std::string &number, const char *statm, const char *exe,
                             const char *comm) {
        tree.file("proc/" + number + "/statm", statm);
        tree.file("proc/" + number + "/comm", comm);
        if (*exe)
            tree.link("proc/" + number + "/exe", exe);
    };
    process("2", "0 0 0 0 0 0 0\n", "", "kthreadd\n");
    process("10", "900 300 100 1 0 200 0\n", "/opt/a b/tool (deleted)", "worker\n");
    process("11", "900 300 400 1 0 200 0\n", "/usr/bin/python3.11", "own)\nscript\n");
    process("self", "900 300 100 1 0 200 0\n", "/bin/x", "x\n");
    auto all = readProcessMemory(tree.path() / "proc", ProcessReading::Exact, nullptr);
    std::sort(all.begin(), all.end(),
              [](const auto &a, const auto &b) { return a.process < b.process; });
    ASSERT_EQ(all.size(), 2u);
    const auto page = std::uint64_t(::sysconf(_SC_PAGESIZE));
    EXPECT_EQ(all[0].program, "tool");
    EXPECT_EQ(all[0].own, 200 * page);
    EXPECT_EQ(all[0].shared, 100 * page);
    EXPECT_FALSE(all[0].isExact) << "another user's";
    EXPECT_EQ(all[1].program, "own)\nscript");
    EXPECT_EQ(all[1].own, 0u) << "the counters are not of one moment";
    const std::atomic<bool> stop = true;
    EXPECT_TRUE(readProcessMemory(tree.path() / "proc", ProcessReading::Quick, &stop).empty());
}

TEST(MemorySource, TheUnitTellsTheApplication) {
    const std::pair<const char *, const char *> rows[] = {
        {"0::/user.slice/app.slice/app-gnome-org.gnome.Nautilus-1234.scope", "org.gnome.Nautilus"},
        {"0::/app.slice/app-firefox\\x2desr-77.scope/child.scope\n", "firefox-esr"},
        {"1:name=systemd:/a/app-flatpak-org.x.Y-12.scope\n0::/a\n", "org.x.Y"},
        {"0::/app.slice/app-org.kde.konsole@a1b2.service", "org.kde.konsole"},
        {"0::/app.slice/app-org.kde.kate.service", "org.kde.kate"},
        {"0::/app.slice/snap.code.code-1f-2e.scope", "code"},
        {"0::/app.slice/vte-spawn-1.scope", ""},
        {"0::/system.slice/app-.timer", ""},
        {"", ""},
    };
    for (const auto &[group, application] : rows)
        EXPECT_EQ(applicationOfGroup(group), application) << group;
}

} // namespace
} // namespace brightsweep::test
