#include "CleanPage.h"

#include "cleaning/CleanNotifications.h"
#include "cleaning/CleanSysController.h"
#include "core/ParseFileLog.h"
#include "core/UtilityObject.h"
#include "foundation/NotificationCenter.h"
#include "support/FaultPlatform.h"
#include "support/TestEnvironment.h"

#include <QPointer>

#include <gmock/gmock.h>

#include <atomic>
#include <cmath>
#include <thread>

namespace brightsweep {
namespace {

using test::CleanPage;
using testing::ElementsAre;
using testing::IsEmpty;
using State = CleanSysController::State;

constexpr CleanSysController::Delays quick{std::chrono::milliseconds(30),
                                           std::chrono::milliseconds(10)};

// A quick clean as the application holds it, with what it said.
class QuickClean {
public:
    explicit QuickClean(CleanSysController::Delays delays = quick)
        : controller(new CleanSysController(delays)) {
        QObject::connect(controller, &CleanSysController::showBubble, &context,
                         [this](const QStringList &lines, int width, int index) {
                             bubbles.push_back(lines.join(QLatin1Char('|')).toStdString());
                             widths.push_back(width);
                             indices.push_back(index);
                         });
        NotificationCenter::defaultCenter().addObserver(
            &context, QStringLiteral("ShouldCloseWindow"),
            [this](const Notification &notification) {
                if (notification.object == controller.data())
                    ++closes;
            });
    }
    ~QuickClean() { delete controller.data(); }
    void run() {
        controller->windowDidLoad();
        test::waitUntil([&] { return closes > 0; });
    }

    QObject context;
    QPointer<CleanSysController> controller;
    std::vector<std::string> bubbles;
    std::vector<int> widths;
    std::vector<int> indices;
    int closes = 0;
};

TEST(CleanSysController, WithNothingSelectedItOnlySaysSo) {
    CleanPage::store("000200"); // a part does not count
    const test::CleanableMachine machine;
    const auto before = machine.state();
    QuickClean clean;
    clean.run();
    ASSERT_EQ(clean.bubbles.size(), 1u);
    EXPECT_EQ(clean.widths[0], 220);
    EXPECT_TRUE(UtilityObject::getMyObject().isCanBeAction);
    EXPECT_EQ(machine.state(), before);
}

TEST(CleanSysController, SettingsThatCannotBeReadEmptyNothing) {
    const test::CleanableMachine machine;
    test::TestTree(test::TestEnvironment::current().home())
        .file(".config/com.norvmac.DeskSweeperPro.conf", "UserCaches=0\ndamaged");
    const auto before = machine.state();
    QuickClean clean;
    clean.run();
    EXPECT_THAT(clean.bubbles[0], testing::StartsWith("The settings cannot be read"));
    EXPECT_EQ(machine.state(), before);
}

TEST(CleanSysController, EmptiesTheMarkedCategoriesAndReportsWhatWent) {
    CleanPage::store("010001");
    const test::CleanableMachine machine;
    const auto before = machine.state();
    QuickClean clean;
    EXPECT_FALSE(UtilityObject::getMyObject().isCanBeAction);
    EXPECT_EQ(clean.controller->showFixedText(), QStringLiteral("Scanning system..."));
    clean.run();
    EXPECT_EQ(test::changes(before, machine.state()), machine.changesOf({1, 5}));
    ASSERT_EQ(clean.bubbles.size(), 1u);
    EXPECT_EQ(clean.widths[0], 280);
    const std::size_t items = machine.items[1].size() + machine.items[5].size();
    // A link has the size of its text.
    EXPECT_THAT(clean.bubbles[0], testing::StartsWith("Items cleaned: " + std::to_string(items) +
                                                      "|Space freed: 11."));
    EXPECT_THAT(clean.controller->showFixedText().toStdString(), testing::EndsWith(" is cleaned"));
    EXPECT_GT(ParseFileLog().getSize(nullptr), 11'000);
    EXPECT_EQ(clean.controller->progressVal(), 100);
    EXPECT_EQ(UtilityObject::getMyObject().liveBubbleCount, 0);
    EXPECT_EQ(UtilityObject::getMyObject().totalBubbleCount, 0);
    EXPECT_EQ(clean.closes, 1);
}

TEST(CleanSysController, TellsWhatStayedAndWhy) {
    const struct {
        std::errc error;
        const char *stuck; // "" for all
        const char *bubble;
    } rows[] = {
        {std::errc::permission_denied, "",
         "Items cleaned: 0, 0.00 KB|2 items need administrator rights"},
        {std::errc::read_only_file_system, "",
         "Items cleaned: 0, 0.00 KB|2 items are on a "
         "read-only volume"},
        {std::errc::device_or_resource_busy, "folder",
         "Items cleaned: 1, 9.00 KB|1 item is in use"},
    };
    CleanPage::store("000001");
    const test::CleanableMachine machine;
    test::FaultPlatform fault;
    for (const auto &row : rows) {
        fault.setFault([&](std::string_view call, const std::filesystem::path &path) {
            return call == "removeItem" && (!*row.stuck || path.filename() == row.stuck)
                       ? std::make_error_code(row.error)
                       : std::error_code();
        });
        QuickClean clean;
        clean.run();
        EXPECT_GT(clean.controller->failedCount(), 0u);
        EXPECT_EQ(clean.bubbles[0], row.bubble);
        EXPECT_TRUE(clean.bubbles[0].ends_with(clean.controller->curDeleteFile().toStdString()));
        EXPECT_EQ(ParseFileLog().getSize(nullptr), *row.stuck ? 9'000 : 0);
    }
}

TEST(CleanSysController, ASizeOfNothingGivesAnEndlessFigureAndAFullBar) {
    CleanPage::store("010000");
    test::TestTree(test::TestEnvironment::current().home()).directory(".cache/empty");
    QuickClean clean;
    std::atomic<double> seen{0};
    QObject context;
    NotificationCenter::defaultCenter().addObserver(
        &context, DSDeleteFileSuccess,
        [&](const Notification &) { seen = clean.controller->progressVal(); });
    clean.run();
    EXPECT_TRUE(!std::isfinite(seen)) << seen;
}

TEST(CleanSysController, AStopReportsOnlyWhatWentAndClosesItsWindowOnce) {
    CleanPage::store("000001");
    test::CleanableMachine machine;
    for (int i = 0; i < 300; ++i)
        machine.home.file("Downloads/more/" + std::to_string(i), "x");
    QuickClean clean;
    std::atomic<int> gone{0};
    std::atomic<bool> stop{false};
    QObject context;
    // The first entry that went holds its thread until the stop has been asked for.
    NotificationCenter::defaultCenter().addObserver(
        &context, DSDeleteFileSuccess, [&](const Notification &notification) {
            gone += notification.userInfo.value(QStringLiteral("FileSize")).toInt();
            while (!stop)
                std::this_thread::yield();
        });
    clean.controller->windowDidLoad();
    test::waitUntil([&] { return gone > 0; });
    clean.controller->stopFastClean();
    EXPECT_EQ(clean.closes, 1) << "the window closes at once";
    clean.controller->closeWindow();
    stop = true;
    test::waitUntil([&] { return !clean.bubbles.empty(); });
    EXPECT_EQ(clean.controller->totalDelSize(), std::uint64_t(gone));
    test::waitUntil([&] { return clean.controller.isNull(); });
    EXPECT_EQ(clean.closes, 1);
}

TEST(CleanSysController, AStopDuringTheScanRemovesNothing) {
    CleanPage::store("111111");
    const test::CleanableMachine machine;
    const auto before = machine.state();
    for (int round = 0; round < 20; ++round) {
        QuickClean clean;
        std::atomic<bool> reached{false};
        QObject context;
        // The last moment of the scan, and any before it.
        NotificationCenter::defaultCenter().addObserver(
            &context, round % 2 ? DSScanOperationFinish : DSScanSingleFolder,
            [&](const Notification &) { reached = true; });
        clean.controller->windowDidLoad();
        while (!reached)
            std::this_thread::yield();
        clean.controller->stopFastClean();
        test::waitUntil([&] { return clean.controller->state() == State::Closed; });
        EXPECT_EQ(clean.bubbles.size(), 1u);
    }
    EXPECT_EQ(machine.state(), before);
}

TEST(CleanSysController, AStoppedOneDoesNotDisturbTheNext) {
    CleanPage::store("010000");
    test::CleanableMachine machine;
    const auto before = machine.state();
    QuickClean first;
    std::atomic<bool> holding{false};
    std::atomic<bool> release{false};
    QObject context;
    NotificationCenter::defaultCenter().addObserver(
        &context, DSScanSingleFolder, [&](const Notification &) {
            if (holding.exchange(true))
                return; // only the first run's thread waits
            while (!release)
                std::this_thread::yield();
        });
    first.controller->windowDidLoad();
    while (!holding)
        std::this_thread::yield();
    first.controller->stopFastClean();
    first.controller->closeWindow();
    ASSERT_FALSE(first.controller.isNull()) << "it lives until its operation has ended";
    CleanPage::store("000001");
    QuickClean second;
    second.controller->windowDidLoad();
    release = true;
    test::waitUntil([&] { return second.closes > 0; });
    EXPECT_EQ(test::changes(before, machine.state()), machine.changesOf({5}));
    EXPECT_EQ(second.bubbles[0], "Items cleaned: 2|Space freed: 9.00 KB");
    test::waitUntil([&] { return first.controller.isNull(); });
    EXPECT_EQ(second.closes, 1);
}

TEST(CleanSysController, AResetDuringARunLeavesItAlone) {
    CleanPage::store("000001");
    const test::CleanableMachine machine;
    const auto before = machine.state();
    QuickClean clean;
    clean.controller->windowDidLoad();
    clean.controller->resetStatus();
    clean.run();
    EXPECT_EQ(test::changes(before, machine.state()), machine.changesOf({5}));
}

} // namespace
} // namespace brightsweep
