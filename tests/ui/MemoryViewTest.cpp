#include "memory/CleanMemoryController.h"
#include "memory/ui/MemoryPanel.h"
#include "memory/ui/PieChartView.h"
#include "support/FakeDesktop.h"
#include "support/ManualClock.h"

#include <QImage>
#include <QLabel>

#include <gtest/gtest.h>

namespace brightsweep::test {
namespace {

TEST(PieChart, SlicesRunClockwiseFromTheTopOverADarkRim) {
    PieChartView chart;
    EXPECT_EQ(chart.total(), 0.0F);
    std::vector<PieChartItem> items;
    for (const MemoryPart &part : memoryParts)
        items.push_back(PieChartItem::itemWithName({}, part.color, 25));
    chart.setPieChartItems(items);
    EXPECT_EQ(chart.total(), 100.0F);
    chart.resize(300, 250);
    const QImage image = chart.grab().toImage();
    const auto at = [&](int x, int y) { return image.pixelColor(x, y).rgb(); };
    const QPoint middle(150, 105);
    EXPECT_EQ(at(middle.x() + 50, middle.y() - 20), qRgb(0, 247, 44));
    EXPECT_EQ(at(middle.x() + 50, middle.y() + 20), qRgb(254, 249, 53));
    EXPECT_EQ(at(middle.x() - 50, middle.y() + 20), qRgb(16, 63, 251));
    EXPECT_EQ(at(middle.x() - 50, middle.y() - 20), qRgb(255, 42, 26));
    // The disc is 58 high here, and the rim goes 40 further down.
    EXPECT_EQ(at(152, middle.y() + 58 + 20), qRgb(162, 159, 42));
    EXPECT_NE(at(152, middle.y() + 58 + 42), qRgb(162, 159, 42));
}

TEST(MemoryPanel, NothingIsWrittenWhileItIsHidden) {
    auto *const memory = new FakeMemory;
    Platform::current().memory.reset(memory);
    ManualClock clock;
    CleanMemoryController controller({[] { return true; }, &clock});
    MemoryPanel panel(controller);
    const auto *const available = panel.findChild<QLabel *>(QStringLiteral("memory.available"));
    EXPECT_EQ(available->text(), QString());
    panel.show();
    EXPECT_EQ(available->text(), QStringLiteral("2.00 GB"));
    panel.hide();
    memory->available = 1'073'741'824;
    clock.advance(std::chrono::seconds(2));
    EXPECT_EQ(available->text(), QStringLiteral("2.00 GB"));
    panel.show();
    EXPECT_EQ(available->text(), QStringLiteral("1.00 GB"));
}

} // namespace
} // namespace brightsweep::test
