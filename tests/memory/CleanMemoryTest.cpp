#include "memory/CleanMemoryController.h"
#include "support/FakeDesktop.h"
#include "support/LogCapture.h"
#include "support/ManualClock.h"
#include "support/TestEnvironment.h"
#include "support/TestTree.h"
#include "support/WaitUntil.h"

#include <gtest/gtest.h>

namespace brightsweep::test {
namespace {

using namespace std::chrono_literals;

class CleanMemory : public testing::Test {
protected:
    CleanMemory() {
        FakeFacts::install().value = [](std::string_view name) -> Result<std::string> {
            const std::uint64_t number = name == "hw.pagesize" ? 4096 : 4'096'000;
            return std::string(reinterpret_cast<const char *>(&number), sizeof number);
        };
        Platform::current().memory.reset(memory);
        page.loadView();
    }
    void install(const std::string &script, unsigned mode = 0755) {
        TestTree tree(TestEnvironment::current().system());
        tree.file("usr/bin/purge", "#!/bin/sh\n" + script + "\n");
        tree.mode("usr/bin/purge", mode);
    }
    void setFree(std::uint64_t pages) {
        memory->figures = MemoryCounts{pages, 50, 30, 20, 7, 8, 9};
    }
    void releaseUntilEnd() {
        page.cleanMemoryButtonClick();
        waitUntil([&] {
            clock.advance(1000ms);
            return !page.isReleasing();
        });
    }

    FakeMemory *memory = new FakeMemory;
    ManualClock clock;
    CleanMemoryController page{{[] { return true; }, &clock}};
};

TEST_F(CleanMemory, ReadsOnceASecondAndTheRestOnlyWhileShown) {
    EXPECT_EQ(page.cleanMemInfo().freeMem, QStringLiteral("400.00 KB"));
    std::vector<float> values;
    for (const PieChartItem &item : page.pieChartItems())
        values.push_back(item.itemValue);
    EXPECT_EQ(values, (std::vector<float>{409'600, 122'880, 204'800, 81'920}))
        << "free, active, inactive, wired";
    EXPECT_EQ(page.pieChartItems()[3].itemColor, (PieColor{255, 42, 26}));
    setFree(200);
    memory->quick = {{1, "a", "", 10, 5}, {2, "a", "", 20, 7}};
    const int before = memory->readings;
    clock.advance(3000ms);
    EXPECT_EQ(memory->readings, before + 3);
    EXPECT_EQ(page.cleanMemInfo().freeMem, QStringLiteral("800.00 KB"));
    EXPECT_TRUE(page.programs().empty());
    EXPECT_FALSE(page.details());
    page.setShown(true);
    EXPECT_EQ(page.programs().size(), 1u);
    for (const auto &[percent, words] : {std::pair(0.0, "none"), {9.9, "some"}, {10.0, "high"}}) {
        memory->more.pressure = percent;
        clock.advance(1000ms);
        EXPECT_EQ(page.pressureText(), QLatin1String(words));
    }
    const QString estimated = page.exactnessText();
    const std::pair<std::vector<ProcessMemory>, const char *> shares[] = {
        {{{2, "b", "", 9, 0}, {4, "b", "", 1, 0}},
         "Estimated: you may not read the exact shares of 2 "},
        {{{1, "a", "", 3, 0, true}, {2, "b", "", 2, 0}}, "Exact shares, but for 1 process "},
        {{{1, "a", "", 3, 0, true}}, "Exact shares."},
    };
    for (const auto &[exact, words] : shares) {
        memory->exact = exact;
        page.readExactShares();
        waitUntil([&] { return !page.isReadingShares(); });
        EXPECT_TRUE(page.exactnessText().startsWith(QLatin1String(words)));
    }
    EXPECT_EQ(page.programs()[0].bytes, 3u);
    clock.advance(5000ms);
    EXPECT_NE(page.exactnessText(), estimated) << "they stay to be read";
    clock.advance(40000ms);
    EXPECT_EQ(page.programs()[0].bytes, 37u);
    EXPECT_EQ(page.exactnessText(), estimated);
}

TEST_F(CleanMemory, TellsByHowMuchFreeMemoryGrew) {
    install("echo run >> " + (TestEnvironment::current().work() / "runs").native() + "; sleep 0.2");
    const auto runs = [] {
        std::error_code error;
        return std::filesystem::file_size(TestEnvironment::current().work() / "runs", error) / 4;
    };
    page.cleanMemoryButtonClick();
    EXPECT_TRUE(page.isReleasing());
    EXPECT_EQ(page.imageName(), QStringLiteral("cleaning.png"));
    EXPECT_EQ(page.lastCleanText(), QString());
    page.CleanButtonAction();
    setFree(300);
    releaseUntilEnd();
    EXPECT_EQ(runs(), 1u) << "clicks during a release are ignored";
    EXPECT_EQ(page.cleanFreeSave(), 200u * 4096);
    EXPECT_EQ(page.lastCleanText(), QStringLiteral("800.00 KB freed."));
    EXPECT_TRUE(page.noteTipText().contains(QStringLiteral("as before")));
    EXPECT_EQ(page.imageName(), QStringLiteral("clean_memory_button.png"));
    const LogCapture log;
    page.cleanMemoryButtonClick();
    EXPECT_EQ(page.lastCleanText(), QStringLiteral("800.00 KB freed.")) << "until the next ends";
    setFree(100);
    memory->available = 1'073'741'824;
    releaseUntilEnd();
    EXPECT_EQ(page.lastCleanText(), QStringLiteral("0.00 KB freed."));
    EXPECT_TRUE(page.noteTipText().contains(QStringLiteral("2.00 GB before, 1.00 GB now")));
    EXPECT_TRUE(log.has("释放变小了"));
}

TEST_F(CleanMemory, SaysWhenNothingCouldBeDone) {
    for (const unsigned mode : {0755u, 0u}) {
        install("exit 1", mode); // without a right to run it, it cannot even be started
        releaseUntilEnd();
        EXPECT_EQ(page.lastCleanText(), QStringLiteral("0.00 KB freed."));
        EXPECT_TRUE(page.noteTipText().startsWith(QStringLiteral("No memory could be freed.")));
    }
}

TEST(LargestPrograms, GroupsByApplicationThenByExecutable) {
    const std::vector<ProcessMemory> processes = {
        {1, "shell", "org.Terminal", 10, 100},
        {2, "terminal", "org.Terminal", 50, 80},
        {3, "shell", "", 30, 0},
        {4, "shell", "", 5, 0},
        {5, "shell", "org.Other", 1, 1},
        {6, "tiny", "", 1, 0},
    };
    const auto programs = largestPrograms(processes, 3);
    ASSERT_EQ(programs.size(), 3u);
    EXPECT_EQ(programs[0].application, "org.Terminal");
    EXPECT_EQ(programs[0].program, "terminal");
    EXPECT_EQ(programs[0].bytes, 160u) << "what they share counts once";
    EXPECT_EQ(programs[1].bytes, 35u);
    EXPECT_EQ(programs[1].processes, 2u);
    EXPECT_EQ(programs[2].application, "org.Other");
    EXPECT_TRUE(largestPrograms({}, 3).empty());
}

} // namespace
} // namespace brightsweep::test
