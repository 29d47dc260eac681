#include "diskusage/RecordingCanvas.h"
#include "diskusage/Trees.h"
#include "support/TestTree.h"

#include <gtest/gtest.h>

#include <cmath>

namespace brightsweep {
namespace {

using test::forEachNode;
using test::scan;
using test::TestTree;
using test::Tree;
using Color = std::array<int, 3>;

std::vector<RecordingCanvas::Sector> paint(AllDir &node, bool selected = false) {
    RecordingCanvas canvas;
    const ChartCanvas::Use use(canvas);
    node.Paint(360.0, 0.0, 1, 0, selected);
    EXPECT_EQ(canvas.pushed, 0);
    return canvas.sectors;
}

AllDir &child(AllDir &node, const std::string &name) {
    AllDir *found = nullptr;
    EXPECT_EQ(node.Find(node.szPath() + name + "/", &found), 1) << name;
    return *found;
}

TEST(RingPaint, RingsNarrowTowardsTheRim) {
    double before = 0;
    int level = 0;
    for (const double edge : {0.6364, 1.2149, 1.7408, 2.2189, 2.6536, 3.0487}) {
        double inner = -1;
        double outer = -1;
        AllDir::GetRangeFromStep(++level, inner, outer);
        EXPECT_NEAR(inner, before, 1e-9) << level;
        EXPECT_NEAR(outer, edge, 5e-5) << level;
        before = outer;
    }
    EXPECT_EQ((AllDir::GetRangeFromStep(1, before, before), before), 0.699999988079071 / 1.1);
}

TEST(RingPaint, HidesThreeDegreesAndLess) {
    TestTree tree;
    tree.sparseFile("wide/x/file", 3300);
    tree.sparseFile("just/x/file", 31);
    tree.sparseFile("three/x/file", 30);
    tree.sparseFile("narrow/x/file", 29);
    tree.sparseFile("own", 210);
    const Tree root = scan(tree.top());
    const auto sectors = paint(*root);
    const std::vector<std::string> names{"wide", "x", "just", "x"};
    ASSERT_EQ(sectors.size(), 1 + names.size());
    for (std::size_t i = 0; i < names.size(); ++i)
        EXPECT_EQ(sectors[i + 1].node->name(), names[i]);
    EXPECT_DOUBLE_EQ(sectors[3].start, 330);
    EXPECT_DOUBLE_EQ(sectors[3].sweep, 3.1);
    EXPECT_EQ(sectors[3].slices, 2);
    EXPECT_EQ(sectors[1].slices, 110);
    EXPECT_EQ(sectors[1].loops, 1);
    // What is hidden keeps its place and hides what lies below, which stays as it was.
    const AllDir &narrow = child(*root, "narrow");
    EXPECT_TRUE(narrow.bHidden);
    EXPECT_TRUE(child(*root, "three").bHidden);
    EXPECT_NEAR(narrow.dStartAngle, 336.1, 1e-9);
    EXPECT_EQ(narrow.ppChildren()[0].load()->iLevel, 0);
    EXPECT_FALSE(child(*root, "just").bHidden);
}

TEST(RingPaint, StopsAtTheFifthLevelAndAtTheStopFlag) {
    TestTree tree;
    tree.sparseFile("2/3/4/5/6/7/file", 1000);
    const Tree root = scan(tree.top());
    EXPECT_EQ(paint(*root).size(), 5u);
    AllDir *sixth = root.get();
    for (int i = 0; i < 5; ++i)
        sixth = sixth->ppChildren()[0];
    EXPECT_EQ(sixth->iLevel, 0);
    EXPECT_EQ(paint(*sixth).size(), 2u);
    EXPECT_EQ(paint(*root).size(), 5u);
    EXPECT_EQ(sixth->iLevel, 1); // as it was drawn last
    EXPECT_EQ(sixth->Paint(17, 5, 6, 1, false), 17);
    AllDir::bStopScan = true;
    EXPECT_EQ(paint(*root).size(), 1u);
    AllDir::bStopScan = false;
}

TEST(RingPaint, WithoutSizeOnlyTheCentreIsDrawn) {
    TestTree tree;
    tree.directory("a");
    const Tree root = scan(tree.top());
    EXPECT_EQ(paint(*root).size(), 1u);
    EXPECT_TRUE(std::isnan(child(*root, "a").dSweepAngle));
    EXPECT_TRUE(child(*root, "a").bHidden);
    // Sizes taken away in words may leave a child larger than its parent.
    child(*root, "a").iSize = 500;
    EXPECT_EQ(paint(*root).size(), 1u);
    root->iSize = 1;
    EXPECT_EQ(paint(*root).size(), 2u);
}

TEST(RingPaint, ColoursFollowThePlaceInTheCircle) {
    TestTree tree;
    tree.sparseFile("a/deep/er/file", 180);
    tree.sparseFile("b/deep/file", 90);
    tree.sparseFile("c/file", 80);
    tree.sparseFile("own", 10);
    const Tree root = scan(tree.top());
    const auto color = [](const RecordingCanvas::Sector &sector) {
        return Color{sector.fill[0], sector.fill[1], sector.fill[2]};
    };
    const auto sectors = paint(*root);
    ASSERT_EQ(sectors.size(), 7u);
    const Color expected[] = {
        {39, 41, 51},                                      // the centre
        {226, 110, 115}, {228, 111, 116}, {228, 111, 116}, // palette 0 and what lies outside it
        {115, 115, 167}, {116, 116, 168},                  // 180 degrees: palette 14
        {116, 113, 229},                                   // 270 degrees: palette 21
    };
    for (std::size_t i = 0; i < sectors.size(); ++i) {
        EXPECT_EQ(color(sectors[i]), expected[i]) << i;
        EXPECT_EQ(sectors[i].outline, (std::array<double, 3>{85, 85, 85}));
    }
    RecordingCanvas canvas;
    const ChartCanvas::Use use(canvas);
    AllDir &deep = *child(*root, "a").ppChildren()[0];
    EXPECT_EQ(deep.Repaint(true, "", ""), 180);
    ASSERT_EQ(canvas.sectors.size(), 2u);
    EXPECT_EQ(canvas.sectors[0].node, &deep);
    EXPECT_EQ(canvas.sectors[0].level, 3);
    for (const auto &sector : canvas.sectors) {
        EXPECT_EQ(color(sector), (Color{46, 87, 199}));
        EXPECT_EQ(sector.outline, (std::array<double, 3>{0, 0, 255}));
    }
}

} // namespace
} // namespace brightsweep
