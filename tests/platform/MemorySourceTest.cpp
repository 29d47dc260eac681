#include "platform/MemorySource.h"

#include "platform/Platform.h"
#include "platform/linux/LinuxMemorySource.h"

#include <gtest/gtest.h>

namespace brightsweep {
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
}

} // namespace
} // namespace brightsweep
