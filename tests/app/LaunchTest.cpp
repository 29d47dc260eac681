#include "app/RefreshLoop.h"
#include "app/Resident.h"
#include "core/LaunchAtLogin.h"
#include "core/SettingKeys.h"
#include "duplicates/SameFileDeleteViewController.h"
#include "foundation/FileDescriptor.h"
#include "foundation/Log.h"
#include "foundation/SmallFile.h"
#include "foundation/UserDefaults.h"
#include "preferences/PreferenceViewController.h"
#include "support/TestEnvironment.h"
#include "support/TestTree.h"
#include "volumes/VolumeNotifications.h"

#include <QCoreApplication>
#include <QDeadlineTimer>

#include <fcntl.h>

#include <atomic>

namespace brightsweep::test {
namespace {

// The rows that the left list has been told to select, with the text before the row.
class Selections : public QObject {
public:
    Selections() {
        NotificationCenter::defaultCenter().addObserver(
            this, QStringLiteral("shouldSelectRow"), [this](const Notification &notification) {
                const auto object = notification.userInfo.value(QStringLiteral("object")).toList();
                rows += object[0].toString() + QString::number(object[1].toInt());
            });
    }
    QStringList rows;
};

using Launch = Resident;

TEST_F(Launch, OpensTheWindowOnTheFirstRow) {
    PreferenceViewController::setLastClickRow(8);
    const Selections selections;
    launch();
    EXPECT_TRUE(window().isVisible());
    EXPECT_EQ(window().levelKey(), 4);
    EXPECT_EQ(PreferenceViewController::getLastClickRow(), 0);
    EXPECT_EQ(selections.rows, (QStringList{QStringLiteral("0"), QStringLiteral("0")}));
    EXPECT_TRUE(item->shown);
    EXPECT_EQ(AppDelegateParts().refreshInterval, std::chrono::seconds(2));
}

TEST_F(Launch, StaysInTheTrayWhenStartedWithTheSession) {
    UserDefaults::standardUserDefaults().setObject(DSLoginCheckKey, QStringLiteral("YES"));
    parts.refreshInterval = std::chrono::milliseconds(1);
    loginItems.become({{.file = "b", .path = "/opt/brightsweep"}});
    QObject context;
    int ticks = 0;
    NotificationCenter::defaultCenter().addObserver(&context, updateNewDiskSizeViewNotification,
                                                    [&](const Notification &) { ++ticks; });
    launch();
    EXPECT_FALSE(window().isVisible());
    EXPECT_NE(delegate->mainWindow(), nullptr);
    EXPECT_TRUE(item->shown);
    EXPECT_TRUE(eventually([&] { return ticks >= 3; }));
    EXPECT_TRUE(lines().contains(QStringLiteral("Launch at login")));
    EXPECT_TRUE(delegate->menu().isChecked(MenuAction::LaunchAtLogin));
}

TEST_F(Launch, AStartDuringTheLaunchIsAnsweredAfterIt) {
    UserDefaults::standardUserDefaults().setObject(DSLoginCheckKey, 1);
    make();
    delegate->applicationWillFinishLaunching();
    instance->activate({"token", {}});
    EXPECT_EQ(delegate->mainWindow(), nullptr);
    delegate->applicationDidFinishLaunching();
    EXPECT_TRUE(window().isVisible());
    EXPECT_EQ(window().takeActivationToken(), "token");
    EXPECT_EQ(window().takeActivationToken(), "");
}

TEST_F(Launch, ALaterStartShowsTheRowUsedLast) {
    launch();
    window().windowWillClose();
    PreferenceViewController::setLastClickRow(9);
    const Selections selections;
    instance->activate({});
    EXPECT_TRUE(window().isVisible());
    EXPECT_EQ(selections.rows, QStringList(QStringLiteral("9")));
}

TEST_F(Launch, AFolderIsSearchedForDuplicatesAlsoOneThatCameDuringTheLaunch) {
    const test::TestTree tree;
    make();
    delegate->applicationWillFinishLaunching();
    instance->activate({"one", RequestedPage::Duplicates, tree.top()});
    instance->activate({"two"});
    delegate->applicationDidFinishLaunching();
    EXPECT_EQ(window().selectedItem(), QStringLiteral("duplicates_file"));
    const SameFileDeleteViewController &page = *window().sameFileDeleteView();
    EXPECT_EQ(page.searchPath(), tree.top());
    // While it searches another one only shows the page.
    instance->activate({"three", RequestedPage::Duplicates, "/elsewhere"});
    EXPECT_EQ(page.searchPath(), tree.top());
    EXPECT_TRUE(eventually([&] { return page.canBegin(); }));
}

TEST_F(Launch, MenuEntriesGoToTheirRows) {
    launch();
    const Selections selections;
    delegate->onClickUninstall();
    EXPECT_EQ(window().currentPanel(), QStringLiteral("delete"));
    delegate->onClickScan();
    EXPECT_EQ(window().currentPanel(), QStringLiteral("Scan"));
    delegate->onClickFree();
    EXPECT_EQ(window().currentPanel(), QStringLiteral("disk_usage"));
    EXPECT_EQ(selections.rows.filter(QStringLiteral("s")),
              (QStringList{QStringLiteral("s8"), QStringLiteral("s0"), QStringLiteral("s9")}));
    delegate->Reference();
    EXPECT_EQ(window().currentPanel(), QStringLiteral("preferences"));
    EXPECT_EQ(window().selectedItem(), QStringLiteral("preferences"));
    int about = 0;
    QObject::connect(delegate.get(), &AppDelegate::aboutRequested, [&] { ++about; });
    delegate->AboutFunCall();
    EXPECT_EQ(about, 1);
}

TEST_F(Launch, HelpOpensTheGuide) {
    parts.guide = "/usr/share/doc/guide";
    launch();
    window().toggleActivePreferenceView(QStringLiteral("Help"));
    EXPECT_EQ(workspace->opened, (std::vector<std::filesystem::path>{"/usr/share/doc/guide"}));
    EXPECT_EQ(window().currentPanel(), QStringLiteral("Scan"));
}

TEST_F(Launch, QuitEndsWithOneAndTakesTheItemAway) {
    launch();
    const auto path = test::TestEnvironment::current().work() / "log";
    const FileDescriptor file(::open(path.c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600));
    const int before = Log::descriptor();
    Log::setDescriptor(file.get());
    ObjectLog worker;
    worker.log("the last of a worker");
    delegate->menu().activate(MenuAction::Quit);
    Log::setDescriptor(before);
    EXPECT_EQ(exits, std::vector<int>{1});
    EXPECT_FALSE(item->shown);
    EXPECT_NE((*readSmallFile(path)).find("the last of a worker"), std::string::npos);
}

TEST_F(Launch, QuitDoesNotWaitForAnEject) {
    std::atomic<bool> release{false};
    std::atomic<bool> reached{false};
    volumes->beforeEject = [&] {
        reached = true;
        while (!release)
            std::this_thread::yield();
    };
    volumes->add("/media/stick").extendedAttributes = volumeIsOnExternalBusBit;
    parts.refreshInterval = std::chrono::milliseconds(1);
    launch();
    delegate->menu().backDisk(rowIndex(2));
    EXPECT_TRUE(eventually([&] { return reached.load(); }));
    delegate->menu().activate(MenuAction::Quit);
    EXPECT_EQ(exits, std::vector<int>{1});
    release = true;
    // The worker uses what lies in this function.
    delegate.reset();
}

TEST_F(Launch, LaunchAtLoginRenewsTheEntry) {
    launch();
    loginItems.become({{.file = "a", .path = "/other"}, {.file = "b", .path = "/opt/brightsweep"}});
    delegate->menu().activate(MenuAction::LaunchAtLogin);
    const std::vector<std::string> renewed = {"remove b", "add /opt/brightsweep"};
    waitUntil([&] { return loginItems.calls() == renewed; });
    EXPECT_TRUE(delegate->menu().isChecked(MenuAction::LaunchAtLogin));
    EXPECT_EQ(UserDefaults::standardUserDefaults().integerForKey(DSLoginCheckKey), 1);
    delegate->menu().activate(MenuAction::LaunchAtLogin);
    waitUntil([&] { return loginItems.paths() == std::vector<std::filesystem::path>{"/other"}; });
    EXPECT_FALSE(delegate->menu().isChecked(MenuAction::LaunchAtLogin));
    EXPECT_EQ(UserDefaults::standardUserDefaults().integerForKey(DSLoginCheckKey), 0);
}

TEST_F(Launch, LaunchAtLoginShowsWhatTheEntryIs) {
    UserDefaults::standardUserDefaults().setObject(DSLoginCheckKey, 1);
    launch();
    QStringList alerts;
    QObject::connect(delegate.get(), &AppDelegate::alertRequested,
                     [&](const QString &text) { alerts += text; });
    using enum LoginItemObstacle;
    const std::string own = "com.norvmac.DeskSweeperPro.desktop";
    const PreferenceViewController page{PreferenceViewController::Surroundings()};
    const std::pair<std::vector<LoginItemEntry>, bool> rows[] = {
        {{}, false},
        {{{.file = "b", .path = "/opt/brightsweep"}}, true},
        {{{.file = "b", .path = "/opt/brightsweep", .hidden = true}}, false},
        {{{.file = own, .path = "/else"}}, true},
        {{{.file = own, .path = "/gone", .missing = true}}, false},
        {{{.file = own, .path = "/else"}}, true},
        {{{.file = own, .path = "/else", .obstacle = OtherDesktop}}, false},
    };
    for (const auto &[entries, isOn] : rows) {
        loginItems.become(entries);
        EXPECT_TRUE(eventually([&, on = isOn] {
            return delegate->menu().isChecked(MenuAction::LaunchAtLogin) == on &&
                   page.checkBoxBtn() == on;
        })) << isOn;
    }
    for (const char *failing : {"add", "remove"}) {
        alerts.clear();
        loginItems.fail(failing, std::errc::read_only_file_system, 1);
        delegate->menu().activate(MenuAction::LaunchAtLogin);
        const bool wanted = delegate->menu().isChecked(MenuAction::LaunchAtLogin);
        waitUntil([&] { return !alerts.isEmpty(); });
        EXPECT_NE(delegate->menu().isChecked(MenuAction::LaunchAtLogin), wanted);
        EXPECT_TRUE(page.launchProblem().endsWith(QLatin1String("Read-only file system")));
        loginItems.become({{.file = own, .path = "/else"}});
        waitUntil([&] { return page.checkBoxBtn(); });
    }
    alerts.clear();
    loginItems.fail("items", std::errc::not_a_directory);
    loginItems.fail("add", std::errc::not_a_directory);
    loginItems.become({});
    delegate->menu().activate(MenuAction::LaunchAtLogin);
    waitUntil([&] { return alerts.size() == 1; });
    delegate->launchAppWhenLogin(0);
    waitUntil([&] { return alerts.size() == 2; });
    EXPECT_FALSE(page.checkBoxBtn()) << "nothing is known of the list";
}

TEST_F(Launch, WithoutAHostItSaysOnceWhereItIs) {
    const struct {
        const char *what;
        bool host;
        int loginCheck;
        std::size_t told;
    } rows[] = {
        {"no host, no window", false, 1, 1},
        {"a host", true, 1, 0},
        {"a window", false, 0, 0},
    };
    for (const auto &each : rows) {
        SCOPED_TRACE(each.what);
        UserDefaults::standardUserDefaults().setObject(DSLoginCheckKey, each.loginCheck);
        item->host = each.host;
        notifier->shown.clear();
        launch();
        clock.advance(std::chrono::milliseconds(9'999));
        EXPECT_TRUE(notifier->shown.empty());
        clock.advance(std::chrono::hours(1));
        ASSERT_EQ(notifier->shown.size(), each.told);
        if (each.told) {
            EXPECT_EQ(notifier->shown[0].actionLabel, QStringLiteral("Open"));
            notifier->shown[0].action("click");
            EXPECT_TRUE(window().isVisible());
            EXPECT_EQ(window().takeActivationToken(), "click");
        }
        delegate.reset();
        AppPrefsWindowController::resetSharedPrefsWindowController();
    }
}

class FakeCleanWindow final : public CleanWindow {
public:
    explicit FakeCleanWindow(QStringList &calls) : m_calls(calls) {}
    ~FakeCleanWindow() override { m_calls += QStringLiteral("gone"); }
    void resetStatus() override { m_calls += QStringLiteral("reset"); }
    void showWindow() override { m_calls += QStringLiteral("show"); }
    void close() override { m_calls += QStringLiteral("close"); }

private:
    QStringList &m_calls;
};

TEST_F(Launch, TheQuickCleanWindowComesAndGoes) {
    QStringList calls;
    parts.makeCleanWindow = [&] { return std::make_unique<FakeCleanWindow>(calls); };
    launch();
    delegate->cleaningFile();
    delegate->cleaningFile();
    EXPECT_EQ(calls.join(QLatin1Char(' ')), QStringLiteral("reset show reset show"));
    UtilityObject::getMyObject().isCanBeAction = false;
    calls.clear();
    // An operation posts on its own thread; the window goes on the main one.
    std::thread([] { NotificationCenter::defaultCenter().post(DSShouldCloseWindow); }).join();
    EXPECT_TRUE(calls.isEmpty());
    EXPECT_TRUE(eventually([&] { return calls.size() == 2; }));
    EXPECT_EQ(calls.join(QLatin1Char(' ')), QStringLiteral("close gone"));
    EXPECT_FALSE(delegate->isCleanWindowOpen());
    EXPECT_TRUE(UtilityObject::getMyObject().isCanBeAction);
    NotificationCenter::defaultCenter().post(DSShouldCloseWindow);
    EXPECT_EQ(calls.size(), 2);
}

TEST_F(Launch, APurchaseLaunchesTwice) {
    launch();
    rebuilds = 0;
    NotificationCenter::defaultCenter().post(QStringLiteral("PurchaseSuccess"));
    EXPECT_EQ(rebuilds, 1);
    EXPECT_EQ(lines().filter(QStringLiteral("Quit")).size(), 1);
    volumes->mountHandler({true, "x", "/media/x"});
    EXPECT_EQ(bubbles.size(), 1);
}

TEST(RefreshLoop, NeverOverlapsAndEndsAtAnyTime) {
    int inside = 0;
    int ticks = 0;
    const auto tick = [&] {
        EXPECT_EQ(++inside, 1);
        ++ticks;
        // Time enough for the next one, which would be called from within this one.
        for (const QDeadlineTimer end(3); !end.hasExpired();)
            QCoreApplication::processEvents();
        --inside;
    };
    for (int round = 0; round < 50; ++round) {
        // Ends while a call waits for this thread, whose event loop does not run, too.
        const RefreshLoop idle(std::chrono::milliseconds(1), [] {});
        RefreshLoop loop(std::chrono::milliseconds(1), tick);
        const int before = ticks;
        while (round % 2 == 0 && ticks == before)
            QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents,
                                            5);
    }
    EXPECT_GE(ticks, 25);
}

} // namespace
} // namespace brightsweep::test
