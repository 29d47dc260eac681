#include "core/SettingKeys.h"
#include "core/TaskStopper.h"
#include "diskusage/DiskUsageAppController.h"
#include "diskusage/FSNodeStates.h"
#include "diskusage/RecordingCanvas.h"
#include "foundation/UserDefaults.h"
#include "linux/RemovalError.h"
#include "support/FaultPlatform.h"
#include "support/ManualClock.h"
#include "support/TestEnvironment.h"
#include "support/TestTree.h"
#include "support/WaitUntil.h"

#include <gtest/gtest.h>

#include <condition_variable>
#include <set>

namespace brightsweep {
namespace {

using test::TestTree;
using test::waitUntil;
using State = DiskUsageAppController::State;

class DiskUsagePageTest : public testing::Test {
protected:
    DiskUsagePageTest() {
        QObject::connect(&page, &DiskUsageAppController::displayPanel, &page,
                         [this](const QString &panel) { panels.push_back(panel.toStdString()); });
        QObject::connect(&page, &DiskUsageAppController::alert, &page,
                         [this](const char *key) { alerts.push_back(key); });
        QObject::connect(&view(), &V4DiskUsageViewController::canNotRemoveSome, &page,
                         [this] { alerts.push_back("some"); });
        QObject::connect(&view(), &V4DiskUsageViewController::refused, &page,
                         [this](const std::filesystem::path &path, std::error_code error) {
                             alerts.push_back(path.filename().native() + ": " + error.message());
                         });
        QObject::connect(&view(), &V4DiskUsageViewController::showAlertView, &page,
                         [this] { ++sheets; });
        QObject::connect(&page, &DiskUsageAppController::showAlertView, &page,
                         [this] { ++sheets; });
    }
    V4DiskUsageViewController &view() { return page.diskView(); }
    void scan(bool chart, const std::filesystem::path &path) {
        UserDefaults::standardUserDefaults().setObject(DSDiskUsageShowStyle, chart);
        page.viewDragAction(path);
        EXPECT_EQ(page.state(), State::Scanning);
        page.viewDragAction(tree.path("elsewhere")); // does nothing during a scan
        waitUntil([&] { return page.bSearchFinished(); });
        draw();
    }
    void draw() {
        RecordingCanvas canvas;
        const ChartCanvas::Use use(canvas);
        view().openGLView().drawRect(400, 400);
    }
    void settle() {
        waitUntil([&] { return !view().isListing() && !view().selection().isBusy(); });
    }
    void go(const std::string &name) {
        view().mouseDownClick(row(name));
        settle();
        draw();
    }
    std::size_t row(const std::string &name) {
        const auto &rows = view().allShowListArr();
        const std::size_t at = rows.find(name);
        EXPECT_LT(at, rows.size()) << name;
        return std::min(at, rows.size() - 1);
    }
    std::string listed() {
        std::string text;
        const auto &rows = view().allShowListArr();
        for (std::size_t i = 0; i < rows.size(); ++i)
            text += rows[i].aFileInfo.name + (rows[i].isSelected ? "* " : " ");
        return text;
    }
    void ask() {
        const int before = sheets;
        view().removeButtonAction();
        waitUntil([&] { return sheets > before; });
    }
    void remove() {
        view().removeSelectFilesButtonAction(UsageRemoval::Act::Remove);
        settle();
    }
    std::string cells() {
        std::string text;
        for (const PathCell &cell : view().pathCells())
            text += cell.name + ">";
        return text;
    }

    TestTree tree;
    test::ManualClock clock;
    DiskUsageAppController page{{[] { return true; }, &clock}};
    std::vector<std::string> panels;
    std::vector<std::string> alerts;
    int sheets = 0;
};

TEST_F(DiskUsagePageTest, SelectsInSeveralFoldersAndRemoves) {
    for (const char *name : {"a/b/one", "a/two", "d/three", "d/stays", "four"})
        tree.sparseFile(name, 50'000);
    tree.sparseFile("a/small", 900);
    UserDefaults::standardUserDefaults().setObject(DSDiskUsageLimit, 50);
    UserDefaults::standardUserDefaults().setObject(DSDiskUsageUnit, 1);
    scan(true, tree.top());
    EXPECT_EQ(panels, (std::vector<std::string>{"QC_DiskUsage", "DATA_DiskUsage"}));
    EXPECT_EQ(page.levelsDone(), page.rootDirLevels());
    go("a");
    EXPECT_EQ(listed(), "b two ");
    EXPECT_EQ(view().allShowListArr().small(), 1u);
    EXPECT_EQ(cells(), "work>a>");
    view().colorButtonAction(row("two"));
    view().onChangePath(tree.top());
    settle();
    go("d");
    view().colorButtonAction(row("three"));
    view().onChangePath(tree.path("a"));
    settle();
    EXPECT_EQ(listed(), "b two* "); // it outlives navigation
    EXPECT_EQ(view().selectedText(), QStringLiteral("2 items are selected."));
    ask();
    view().canelButtonAction();
    settle();
    EXPECT_EQ(view().selection().count(), 2u);
    tree.file("d/three", "another"); // that one stays
    ask();
    ASSERT_EQ(view().selection().sheet().size(), 2u);
    EXPECT_TRUE(view().selection().sheet()[1].isOther);
    view().selection().select(1, true);
    const auto before = tree.snapshot("d");
    remove();
    EXPECT_EQ(tree.snapshot("d"), before);
    EXPECT_FALSE(tree.exists("a/two"));
    EXPECT_TRUE(tree.exists("a/small") && tree.exists("a/b/one") && tree.exists("four"));
    EXPECT_EQ(view().selection().count(), 0u);
    EXPECT_STREQ(view().removeImage(), "remove_d.png");
    EXPECT_EQ(view().openGLView().currentFacts().bytes, 50'900u);
    EXPECT_TRUE(alerts.empty());
    clock.advance(std::chrono::milliseconds(999));
    EXPECT_TRUE(alerts.empty());
    clock.advance(std::chrono::milliseconds(1));
    EXPECT_EQ(alerts, (std::vector<std::string>{"some"}));
    view().backButtonAction();
    EXPECT_EQ(panels.back(), "disk_usage");
}

TEST_F(DiskUsagePageTest, TheChartFollowsWhatGoes) {
    tree.sparseFile("a/b/c/file", 60'000);
    tree.sparseFile("d/file", 30'000);
    scan(true, tree.top());
    RingChart &chart = view().openGLView();
    chart.step(RingChart::Step::Next);
    chart.step(RingChart::Step::Outwards);
    EXPECT_EQ(chart.foundFacts().path, tree.path("a/b").native() + "/");
    chart.step(RingChart::Step::Next); // b is alone in its ring
    chart.step(RingChart::Step::Inwards);
    chart.step(RingChart::Step::Previous);
    EXPECT_EQ(chart.foundFacts().path, tree.path("d").native() + "/");
    chart.step(RingChart::Step::Next);
    chart.enterFound();
    settle();
    draw();
    EXPECT_EQ(listed(), "b ");
    chart.findChild(tree.path("a/b").native() + "/");
    view().toggleFound();
    go("b");
    view().changeSelectArr(true, view().rootItem()); // the same folder, told with a slash
    ask();
    // The folder at the centre goes, and gained nothing by having been listed.
    tree.file("a/b/new");
    view().canelButtonAction();
    settle();
    ask();
    EXPECT_EQ(view().selection().sheet().front().gained, 1u);
    view().canelButtonAction();
    settle();
    // Fewer entries, one of them another one.
    std::filesystem::remove(tree.path("a/b/new"));
    std::filesystem::remove(tree.path("a/b/c/file"));
    tree.file("a/b/c/precious", "written since");
    ask();
    EXPECT_EQ(view().selection().sheet().front().gained, 1u);
    remove();
    EXPECT_FALSE(tree.exists("a/b"));
    EXPECT_TRUE(tree.exists("a") && tree.exists("d/file"));
    EXPECT_EQ(view().currentPath(), tree.path("a"));
    EXPECT_EQ(chart.rootFacts().bytes, 30'000u);
}

TEST_F(DiskUsagePageTest, FoldersAreReadAgainAndLeftOut) {
    tree.sparseFile("a/b/file", 60'000);
    tree.sparseFile("d/file", 30'000);
    scan(true, tree.top());
    view().leaveOut(tree.path("d"));
    settle();
    EXPECT_EQ(listed(), "a ");
    tree.sparseFile("a/e/file", 70'000);
    go("a");
    view().readAgain(tree.path("a"));
    waitUntil([&] { return !view().isReadingAgain() && !view().isListing(); });
    EXPECT_EQ(listed(), "e b ");
    EXPECT_EQ(view().openGLView().rootFacts().bytes, 130'000u);
    std::filesystem::remove_all(tree.path("a/e"));
    view().readAgain(tree.path("a/e"));
    waitUntil([&] { return !view().isReadingAgain() && !view().isListing(); });
    EXPECT_EQ(listed(), "b ") << "gone";
    EXPECT_FALSE(view().openGLView().factsOf(tree.path("a/e").native() + "/"));
    view().showLeftOut();
    view().updateOpenGLView(tree.top());
    settle();
    EXPECT_EQ(listed(), "a d ");
    tree.file("stored", std::string(4096, 'x'));
    view().refresh();
    settle();
    EXPECT_EQ(listed(), "a d stored ");
    view().setView({ChartMeasure::Stored, ChartColouring::Place});
    EXPECT_EQ(listed(), "stored a d ");
    EXPECT_EQ(view().allShowListArr()[1].shownBytes, 0u);
    view().colorButtonAction(row("d"));
    EXPECT_EQ(view().selection().bytes(), 30'000u);
    EXPECT_EQ(view().selection().bytes(ChartMeasure::Stored), 0u);
    view().colorButtonAction(row("d"));
    // The whole folder read again keeps what is ticked, a scan of another one does not.
    view().colorButtonAction(row("d"));
    view().readAgain(tree.top());
    waitUntil([&] { return page.state() == State::Results; });
    EXPECT_EQ(view().selection().count(), 1u);
    scan(true, tree.path("a"));
    EXPECT_EQ(view().selection().count(), 0u);
    scan(true, tree.top());
    // Called off, it changes nothing.
    tree.sparseFile("d/new", 1);
    view().readAgain(tree.path("d"));
    view().stopReading();
    EXPECT_FALSE(view().isReadingAgain());
    view().updateOpenGLView(tree.path("d"));
    settle();
    EXPECT_EQ(view().openGLView().currentFacts().size, 30'000u);
    view().updateOpenGLView(tree.top());
    settle();
    // The question tells what the list leaves out as small.
    tree.sparseFile("a/b/small", 10);
    UserDefaults::standardUserDefaults().setObject(DSDiskUsageLimit, 1);
    UserDefaults::standardUserDefaults().setObject(DSDiskUsageUnit, 1);
    view().colorButtonAction(row("a"));
    ask();
    EXPECT_EQ(view().selection().sheet().front().now.below.smallEntries, 1u);
}

// The name between the two sorts between them, too.
TEST_F(DiskUsagePageTest, WhatLiesInATickedFolderIsFreedOnce) {
    const std::string block(4096, 'x');
    tree.file("a/x", block);
    tree.file("a b/y", block);
    scan(true, tree.top());
    view().colorButtonAction(row("a"));
    go("a");
    // It goes with the folder; a click on it takes that one back, and then ticks it alone.
    EXPECT_EQ(listed(), "x* ");
    view().colorButtonAction(row("x"));
    EXPECT_EQ(view().selection().count(), 0u);
    view().colorButtonAction(row("x"));
    view().updateOpenGLView(tree.top());
    settle();
    view().colorButtonAction(row("a"));
    view().colorButtonAction(row("a b"));
    ask();
    const auto &sheet = view().selection().sheet();
    ASSERT_EQ(sheet.size(), 3u);
    EXPECT_EQ(view().selection().sheetFreed(), 8192u);
    const auto rowOf = [&](const char *name) {
        std::size_t at = 0;
        while (sheet[at].aFileInfo.path != tree.path(name))
            ++at;
        return at;
    };
    view().selection().select(rowOf("a/x"), false);
    EXPECT_FALSE(sheet[rowOf("a")].isSelected) << "a part of it is to stay";
    EXPECT_TRUE(sheet[rowOf("a b")].isSelected);
    view().selection().select(rowOf("a"), true);
    remove();
    EXPECT_TRUE(tree.snapshot().empty());
    EXPECT_EQ(view().selection().report().failed, 0u);
}

TEST_F(DiskUsagePageTest, NamesWhatCouldNotBeRead) {
    test::FaultPlatform faults;
    for (const char *name : {"open/shut/file", "open/in/shut/file", "open/file"})
        tree.sparseFile(name, 5000);
    faults.setFault([](std::string_view call, const std::filesystem::path &name) {
        return call == "openDirectoryAt" && name.filename() == "shut"
                   ? std::make_error_code(std::errc::permission_denied)
                   : std::error_code();
    });
    for (const bool chart : {true, false}) {
        scan(chart, tree.top());
        const UnreadFolders &unread = chart ? view().unread() : page.listUnread();
        EXPECT_EQ(unread.count, 2u) << chart;
        const std::set<std::string> named(unread.first.begin(), unread.first.end());
        EXPECT_TRUE(named.contains(tree.path("open/in/shut").native()));
        EXPECT_TRUE(named.contains(tree.path("open/shut").native()));
    }
    EXPECT_FALSE(view().hasGone());
    // What shows the same size goes by name.
    for (const char *name : {"open/d", "open/e", "open/c"})
        tree.sparseFile(name, 4001);
    scan(true, tree.path("open"));
    EXPECT_EQ(listed(), "file c d e in shut ");
    scan(true, tree.path("nothing"));
    EXPECT_TRUE(view().hasGone());
}

TEST_F(DiskUsagePageTest, TakesNoTickThatNoRemovalWouldHonour) {
    const auto home = test::TestEnvironment::current().home();
    TestTree(home).sparseFile(".config/file", 100);
    scan(true, home);
    EXPECT_EQ(view().allShowListArr()[row(".config")].refusal, RemovalError::ProtectedPlace);
    view().colorButtonAction(row(".config")); // known beforehand
    EXPECT_EQ(alerts.size(), 1u);
    // What is not known beforehand is known a little later.
    CleanFileInfo top({}, "home", home, QStringLiteral("1.00 KB"), 1000);
    top.isDirectory = true;
    view().changeSelectArr(true, top);
    view().changeSelectArr(true, view().allShowListArr()[row(".config")].aFileInfo);
    waitUntil([&] { return alerts.size() == 3; });
    EXPECT_EQ(view().selection().count(), 0u);
    scan(false, home);
    FSNode &config = *page._rootNode()->children.front();
    EXPECT_EQ(config.refusal, RemovalError::ProtectedPlace);
    EXPECT_FALSE(config.children.front()->refusal);
    page.setNodeTicked(config, true);
    EXPECT_EQ(config._state, NodeOff);
}

TEST_F(DiskUsagePageTest, AStopIsAnsweredWhereTheFileSystemIsNot) {
    test::FaultPlatform faults;
    tree.sparseFile("a/b/file", 100);
    std::mutex mutex;
    std::condition_variable changed;
    bool hangs = true;
    bool first = true;
    std::atomic<bool> waiting = false;
    TestTree other(tree.top().parent_path() / "other");
    other.sparseFile("a/file", 300);
    faults.setFault(
        [&](std::string_view call, const std::filesystem::path &) {
            std::unique_lock lock(mutex);
            if (call == "openDirectoryAt" && std::exchange(first, false)) {
                waiting = true;
                changed.wait(lock, [&] { return !hangs; });
                waiting = false;
            }
            return std::error_code();
        },
        true);
    for (const bool chart : {true, false}) {
        hangs = first = true;
        UserDefaults::standardUserDefaults().setObject(DSDiskUsageShowStyle, chart);
        page.viewDragAction(tree.top());
        waitUntil([&] { return bool(waiting); });
        page.stopBtnClick();
        EXPECT_EQ(page.state(), State::Stopping);
        clock.advance(std::chrono::seconds(1));
        EXPECT_EQ(page.state(), State::Start);
        EXPECT_EQ(page.leftBehind(), tree.top());
        EXPECT_FALSE(TaskStopper::sharedTaskStopper().getStopFlags()); // it stops cleans as well
        scan(chart, other.top());
        EXPECT_EQ(page.state(), State::Results);
        {
            const std::lock_guard lock(mutex);
            hangs = false;
        }
        changed.notify_all();
        waitUntil([&] { return page.leftBehind().empty(); });
        EXPECT_EQ(chart ? view().openGLView().rootFacts().bytes : page._rootNode()->size, 300u);
        EXPECT_EQ(page.levelsDone(), 1);
        scan(chart, tree.top());
        EXPECT_EQ(page.state(), State::Results);
        page.clickBackBtn();
    }
}

TEST_F(DiskUsagePageTest, ListsWhatIsLargeAndRemovesWhatIsTicked) {
    for (const char *name : {"f/x", "f/y", "f/deep/z", "g/w"})
        tree.sparseFile(name, 5000);
    tree.sparseFile("small/file", 10);
    tree.link("way", tree.top());
    UserDefaults::standardUserDefaults().setObject(DSDiskUsageLimit, 1);
    UserDefaults::standardUserDefaults().setObject(DSDiskUsageUnit, 1);
    scan(false, tree.path("way"));
    FSNode &root = *page._rootNode();
    ASSERT_EQ(root.children.size(), 2u);
    FSNode &f = *root.children[0];
    EXPECT_EQ(f.size, 15'000u);
    page.setNodeTicked(f, true);
    EXPECT_EQ(page.listTicks().count(), 1u);
    page.setNodeTicked(*f.children[0], false); // y or x, or deep
    EXPECT_EQ(f._state, NodeMixed);
    EXPECT_EQ(page.listTicks().count(), 2u);
    page.setNodeTicked(*f.children[0], true);
    EXPECT_EQ(f._state, NodeMixed); // never ticked from below
    const std::string kept = f.children[0]->displayName();
    page.setNodeTicked(*f.children[0], false);
    page.removeBtnClick();
    waitUntil([&] { return sheets == 1; });
    page.removeBtnClickAction(UsageRemoval::Act::Remove);
    waitUntil([&] { return !page.listTicks().isBusy(); });
    EXPECT_TRUE(tree.exists("f/" + kept) && tree.exists("g/w") && tree.exists("small/file"));
    EXPECT_EQ(tree.snapshot("f").size(), kept == "deep" ? 2u : 1u);
    EXPECT_EQ(f.size, 5000u);
    EXPECT_EQ(f._state, NodeOff);

    UserDefaults::standardUserDefaults().setObject(DSDiskUsageUnit, 4);
    scan(false, tree.top());
    EXPECT_EQ(alerts, (std::vector<std::string>{
                          "No items found in selected folder. Please try another one."}));
    EXPECT_EQ(page.state(), State::Start);
}

} // namespace
} // namespace brightsweep
