#include "diskusage/RingChart.h"
#include "core/UtilityFunction.h"
#include "diskusage/RecordingCanvas.h"
#include "diskusage/Trees.h"
#include "foundation/Log.h"
#include "foundation/NotificationCenter.h"
#include "support/FaultPlatform.h"
#include "support/TestTree.h"

#include <gtest/gtest.h>

#include <cmath>
#include <ctime>
#include <filesystem>
#include <numbers>
#include <thread>

namespace brightsweep {
namespace {

using test::TestTree;

// A chart of a/b/c (60), d (30), narrow (1) and files of its own (9), with what it posts.
class RingChartTest : public testing::Test {
protected:
    RingChartTest() {
        tree.sparseFile("a/b/c/file", 60000);
        tree.sparseFile("d/file", 30000);
        tree.sparseFile("narrow/file", 600);
        tree.sparseFile("own", 9000);
        tree.sparseFile("small", 400);
        auto &center = NotificationCenter::defaultCenter();
        for (const char *name : {"RefreshLeftView", "ShowBubble", "HideBubble"}) {
            center.addObserver(
                &context, QString::fromLatin1(name),
                [this](const Notification &notification) { posted.push_back(notification); },
                &chart);
        }
    }
    ~RingChartTest() override {
        NotificationCenter::defaultCenter().removeObserver(&context);
        Log::setDescriptor(m_log);
    }

    void build() {
        Log::setDescriptor(-1);
        chart.contructPieTree(tree.top());
        draw();
        posted.clear();
    }
    std::vector<RecordingCanvas::Sector> draw() {
        RecordingCanvas canvas;
        const ChartCanvas::Use use(canvas);
        chart.drawRect(400, 300);
        EXPECT_EQ(canvas.pushed, 0);
        return canvas.sectors;
    }
    // The middle of a level, at an angle clockwise from the top.
    static QPointF place(int level, double degrees) {
        double inner = 0;
        double outer = 0;
        AllDir::GetRangeFromStep(level, inner, outer);
        const double radius = (inner + outer) / 2;
        const double angle = degrees * std::numbers::pi / 180;
        return {radius * std::sin(angle), -radius * std::cos(angle)};
    }
    void click(int level, double degrees) { chart.mouseDown(place(level, degrees), {7, 8}, 1); }
    std::string at(const std::string &relative) const { return tree.path(relative).native(); }
    CleanFileInfo item(const std::string &relative, std::uint64_t bytes) const {
        const auto path = tree.path(relative);
        return {{}, path.filename(), path, UtilityFunction::convertVolSpace(bytes), bytes};
    }
    std::string listed() {
        std::string text;
        for (const Notification &notification : posted) {
            if (notification.name != QStringLiteral("RefreshLeftView"))
                continue;
            const auto &info = notification.userInfo;
            const auto root = info[QStringLiteral("RootPath")].value<CleanFileInfo>();
            text += "[" + root.name + " " + root.size.toStdString();
            const auto items =
                info[QStringLiteral("DecendingItem")].value<FolderListing::Pointer>();
            for (std::size_t i = 0; i < items->size(); ++i)
                text += ", " + (*items)[i].name + " " + (*items)[i].size.toStdString();
            text += "]";
        }
        posted.clear();
        return text;
    }

    const std::string all = "[work 100.00 KB, a 60.00 KB, d 30.00 KB, own 9.00 KB, "
                            "narrow 0.60 KB, small 0.40 KB]";
    TestTree tree;
    const int m_log = Log::descriptor();
    QObject context;
    RingChart chart;
    std::vector<Notification> posted;
};

TEST_F(RingChartTest, ListsTheFolderAfterTheScan) {
    EXPECT_EQ(chart.getCurrentDirectory(), "");
    chart.cancelTask(); // there is nothing to stop
    EXPECT_FALSE(AllDir::bStopScan);
    chart.contructPieTree(tree.top());
    EXPECT_EQ(listed(), all);
    EXPECT_EQ(chart.getCurrentDirectory(), at("") + "/");
    chart.contructPieTree(tree.path("a"));
    EXPECT_EQ(listed(), "[a 60.00 KB, b 60.00 KB]");
    chart.cancelTask();
    EXPECT_TRUE(AllDir::bStopScan);
}

TEST_F(RingChartTest, BubblesFollowTheMouse) {
    build();
    chart.mouseMoved(place(2, 100), {7, 8});
    ASSERT_EQ(posted.size(), 1u);
    EXPECT_EQ(posted[0].userInfo,
              (QVariantMap{{QStringLiteral("CurrentDir"), QStringLiteral("a")},
                           {QStringLiteral("DirSize"), QStringLiteral("60.00 KB")},
                           {QStringLiteral("MouseXPos"), 7.0f},
                           {QStringLiteral("MouseYPos"), 8.0f}}));
    // The found sector is drawn again, with what lies outside it.
    EXPECT_EQ(draw().size(), 5u + 3u);
    posted.clear();
    chart.mouseMoved(place(2, 325), {7, 8}); // found, but too narrow
    EXPECT_TRUE(posted.empty());
    EXPECT_STREQ(chart.found()->name(), "narrow");
    EXPECT_EQ(draw().size(), 5u);
    chart.mouseMoved(place(2, 350), {7, 8}); // the files' gap
    EXPECT_EQ(chart.gapAt(place(2, 350)).path, at("") + "/");
    EXPECT_EQ(chart.gapAt(place(2, 325)).bytes, 10'000u); // with what is too narrow
    EXPECT_EQ(chart.gapAt(place(2, 100)).path, "");
    EXPECT_EQ(chart.gapAt(place(4, 350)).path, "");
    chart.mouseMoved({50, 50}, {7, 8});
    ASSERT_EQ(posted.size(), 1u);
    EXPECT_EQ(posted[0].name, QStringLiteral("HideBubble"));
    EXPECT_EQ(chart.found(), nullptr);
}

TEST_F(RingChartTest, PointsOfTheViewArePlacesOfTheChart) {
    const auto near = [](QPointF point, QPointF expected) {
        return std::hypot(point.x() - expected.x(), point.y() - expected.y()) < 1e-6;
    };
    EXPECT_TRUE(near(RingChart::chartPoint({200, 150}, 400, 300), {0, 0}));
    EXPECT_TRUE(near(RingChart::chartPoint({0, 0}, 400, 300), {-4, -3}));
    EXPECT_TRUE(near(RingChart::chartPoint({300, 600}, 300, 600), {3, 6}));
    EXPECT_TRUE(near(RingChart::chartPoint({1, 1}, 0, 0), {0, 0}));
}

TEST_F(RingChartTest, ClicksGoInAndOut) {
    build();
    click(3, 10);
    EXPECT_EQ(chart.getCurrentDirectory(), at("a/b") + "/");
    EXPECT_EQ(listed(), "[b 60.00 KB, c 60.00 KB]");
    draw();
    click(1, 0);
    EXPECT_EQ(chart.getCurrentDirectory(), at("a") + "/");
    draw();
    click(1, 0);
    listed();
    draw();
    click(1, 0); // the root's centre: no listing
    EXPECT_EQ(posted.size(), 1u);
    EXPECT_EQ(posted[0].name, QStringLiteral("ShowBubble"));
    EXPECT_EQ(chart.found(), nullptr);
    click(2, 325); // too narrow
    EXPECT_EQ(chart.getCurrentDirectory(), at("") + "/");
    EXPECT_EQ(listed(), all);
    click(5, 350); // beside
    EXPECT_EQ(listed(), all);
    chart.mouseDown(place(2, 10), {}, 0);
    EXPECT_EQ(listed(), "");
}

TEST_F(RingChartTest, SeeksChildrenAndThenUpwards) {
    build();
    constexpr struct {
        const char *seek;
        const char *then;
    } rows[] = {{"a/", "a/"}, {"a/b/", "a/b/"}, {"d/", "d/"}, {"a/b/c/", ""},   {"a/", "a/"},
                {"a/", "a/"}, {"", ""},         {"d/", "d/"}, {"nothing/", ""}, {"d", ""}};
    for (const auto &row : rows) {
        posted.clear();
        chart.SeekDirectory(at("") + "/" + row.seek);
        EXPECT_EQ(chart.getCurrentDirectory(), at("") + "/" + row.then) << row.seek;
        EXPECT_EQ(posted.size(), 1u);
        EXPECT_EQ(chart.found(), nullptr);
        draw();
    }
}

TEST_F(RingChartTest, SearchesByWholePaths) {
    build();
    EXPECT_EQ(chart.searchFile(at("") + "/"), chart.root());
    ASSERT_NE(chart.searchFile(at("a/b/c/")), nullptr);
    EXPECT_EQ(chart.searchFile(at("a/b/c/"))->szPath(), at("a/b/c/"));
    for (const char *wrong : {"a/b/c", "a/x/", "own", "own/", "a//"})
        EXPECT_EQ(chart.searchFile(at(wrong)), nullptr) << wrong;
    EXPECT_EQ(chart.searchFile("/"), nullptr);
}

TEST_F(RingChartTest, ClearsTheFlagsBelowTheCurrentFolderOnly) {
    build();
    AllDir *const narrow = chart.searchFile(at("narrow/"));
    EXPECT_TRUE(narrow->bHidden);
    chart.root()->bHidden = true;
    chart.searchFile(at("a/b/c/"))->bHidden = true;
    chart.clearHiddenFlags();
    EXPECT_FALSE(narrow->bHidden);
    EXPECT_FALSE(chart.searchFile(at("a/b/c/"))->bHidden);
    EXPECT_TRUE(chart.root()->bHidden);
}

TEST_F(RingChartTest, RemovalsReduceEveryFolderAbove) {
    build();
    chart.removeFile(item("a/b/c/file", 10000), false);
    for (const auto &[path, size] : {std::pair("", 90000), {"a/", 50000}, {"a/b/c/", 50000}})
        EXPECT_EQ(chart.searchFile(at("") + "/" + path)->iSize, size) << path;
    chart.removeFile(item("narrow/file", 5000), false); // never below 0
    EXPECT_EQ(chart.searchFile(at("narrow/"))->iSize, 0);
    EXPECT_EQ(chart.root()->iSize, 85000);
    chart.removeFile(item("nowhere/file", 5000), false);
    EXPECT_EQ(chart.root()->iSize, 85000);
}

TEST_F(RingChartTest, RemovingTheCentreMovesTheChartToItsParent) {
    build();
    click(4, 10);
    draw();
    EXPECT_EQ(chart.getCurrentDirectory(), at("a/b/c/"));
    chart.mouseMoved(place(1, 0), {});
    chart.removeFile(item("a/b", 60000), true);
    EXPECT_EQ(chart.getCurrentDirectory(), at("a") + "/");
    EXPECT_EQ(chart.found(), nullptr);
    EXPECT_EQ(chart.searchFile(at("a/b/")), nullptr);
    EXPECT_EQ(chart.root()->iSize, 40000);
    EXPECT_EQ(draw().size(), 1u);
    chart.removeFile(item("", 40000), true); // the root itself
    EXPECT_EQ(chart.getCurrentDirectory(), at("") + "/");
    EXPECT_EQ(chart.root()->iSize, 0);
    EXPECT_EQ(draw().size(), 1u);
    EXPECT_EQ(chart.searchFile(at("d/")), nullptr);
}

TEST_F(RingChartTest, TellsWhatIsStoredAndOfWhatKindAndAge) {
    tree.file("d/song.MP3", std::string(20'000, 'x'));
    build();
    const AllDir &root = *chart.root();
    EXPECT_EQ(chart.factsOf(at("d/"))->bytes, 50'000u);
    chart.setView({ChartMeasure::Stored, ChartColouring::Kind});
    // Holes take no room.
    EXPECT_EQ(chart.factsOf(at("d/"))->bytes, 20'480u);
    EXPECT_EQ(chart.factsOf(at("d/"))->size, 50'000u);
    EXPECT_EQ(chart.rootFacts().bytes, chart.factsOf(at("d/"))->bytes);
    EXPECT_EQ(draw().size(), 2u) << "the centre, and what is stored";
    EXPECT_EQ(root.facts.largestClass(), 0) << "none has an extension";
    chart.removeFile(item("d/file", 30'000), false);
    EXPECT_EQ(chart.searchFile(at("d/"))->facts.largestClass(), 2);
    const std::int64_t now = std::time(nullptr);
    EXPECT_EQ(chartColourOf(root, ChartColouring::Age, now), 0u);
    EXPECT_EQ(chartColourOf(root, ChartColouring::Age, now + 800 * 24 * 60 * 60), 4u);
}

TEST_F(RingChartTest, AFolderIsReadAgainInItsPlace) {
    build();
    click(4, 10);
    EXPECT_EQ(chart.getCurrentDirectory(), at("a/b/c/"));
    tree.sparseFile("a/b/c/deep/more", 5'000);
    std::filesystem::remove(tree.path("a/b/c/file"));
    const auto readAgain = [&](const std::string &folder) {
        W32AllDir *const scanned = W32AllDir::newRoot();
        scanned->ListAllDir(at(folder), false);
        chart.replaceFolder(at(folder), scanned);
    };
    readAgain("a/b/");
    EXPECT_EQ(chart.getCurrentDirectory(), at("a/b/c/")) << "what is shown stays";
    for (const auto &[path, size] : {std::pair("", 45'000), {"a/", 5'000}, {"a/b/c/deep/", 5'000}})
        EXPECT_EQ(chart.searchFile(at("") + "/" + path)->iSize, size) << path;
    EXPECT_EQ(draw().size(), 2u);
    std::filesystem::remove_all(tree.path("a/b/c"));
    readAgain("a/b/");
    EXPECT_EQ(chart.getCurrentDirectory(), at("a/b/"));
    readAgain("a/nowhere/");
    readAgain("");
    EXPECT_EQ(chart.root()->iSize, 40'000) << "the scanned folder itself takes a scan";
}

TEST_F(RingChartTest, WhatIsLeftOutComesBack) {
    build();
    click(4, 10);
    EXPECT_TRUE(chart.leaveOut(at("a/b/")));
    EXPECT_TRUE(chart.leaveOut(at("d/")));
    EXPECT_FALSE(chart.leaveOut(at("d/")));
    EXPECT_FALSE(chart.leaveOut(at("") + "/"));
    EXPECT_EQ(chart.getCurrentDirectory(), at("a") + "/");
    EXPECT_EQ(chart.root()->iSize, 10'000);
    chart.removeFile(item("a", 0), true); // takes what was left out in it along
    chart.showLeftOut();
    EXPECT_EQ(chart.root()->iSize, 40'000);
    EXPECT_TRUE(chart.searchFile(at("d/")));
    EXPECT_EQ(chart.leftOut(), 0u);
}

TEST_F(RingChartTest, RemovesFromTheScannedFolderOnly) {
    build();
    const auto outside = tree.top().parent_path() / "outside";
    unsigned asked = 0;
    const auto remove = [&](const RemovalTarget &) { return ++asked > 0; };
    auto left = tree.snapshot();
    for (const auto &path : {outside, tree.top(), tree.path("../outside"), tree.path("a/../d"),
                             std::filesystem::path("/")}) {
        const CleanFileInfo wrong({}, "", path, QStringLiteral("1.00 KB"), 1000);
        EXPECT_FALSE(chart.removeItem(wrong, true, remove)) << path;
    }
    EXPECT_EQ(asked, 0u);
    EXPECT_FALSE(
        chart.removeItem(item("a/b", 60000), true, [](const RemovalTarget &) { return false; }));
    EXPECT_EQ(chart.root()->iSize, 100000);
    EXPECT_TRUE(tree.snapshot() == left);
    EXPECT_TRUE(chart.removeItem(item("a/b", 60000), true));
    EXPECT_EQ(chart.root()->iSize, 40000);
    EXPECT_EQ(chart.searchFile(at("a/b/")), nullptr);
    // The parent lost a link; all else is what it was.
    auto now = tree.snapshot();
    EXPECT_TRUE(now.erase("a"));
    std::erase_if(left, [](const auto &entry) {
        return entry.first == "a" || entry.first.starts_with("a/b");
    });
    EXPECT_TRUE(now == left);
}

// A new scan, the painter and the mouse meet; a stop ends the scan, and nothing is taken out of a
// tree that is being filled.
TEST_F(RingChartTest, IsUsedWhileItIsBuiltAnew) {
    Log::setDescriptor(-1);
    for (int i = 0; i < 300; ++i)
        tree.sparseFile("more/" + std::to_string(i % 20) + "/" + std::to_string(i) + "/file", i);
    std::atomic<bool> done{false};
    std::atomic<int> read{0};
    test::FaultPlatform faults;
    faults.setFault([&](std::string_view call, const std::filesystem::path &) {
        read += call == "readBlock";
        return std::error_code();
    });
    NotificationCenter::defaultCenter().removeObserver(&context);
    std::thread worker([&] {
        for (int i = 0; i < 4; ++i)
            chart.contructPieTree(tree.top());
        done = true;
    });
    while (!done) {
        draw();
        chart.mouseMoved(place(2, 100), {});
        chart.mouseDown(place(2, 30), {}, 1);
        chart.SeekDirectory(at("a/"));
        chart.getCurrentDirectory();
        if (read > 600)
            chart.cancelTask();
    }
    worker.join();
    EXPECT_NE(chart.root(), nullptr);
    AllDir::bStopScan = false;
}

} // namespace
} // namespace brightsweep
