#include "app/Resident.h"
#include "cleaning/NewMainViewController.h"
#include "cleaning/V3MainListView.h"
#include "core/MacLog.h"
#include "core/SettingKeys.h"
#include "core/UtilityFunction.h"
#include "foundation/UserDefaults.h"
#include "support/TestEnvironment.h"
#include "support/TestTree.h"
#include "volumes/VolumeNotifications.h"

#include <future>

namespace brightsweep::test {
namespace {

constexpr std::uint32_t ejectable = volumeIsEjectableBit;
constexpr std::uint32_t removable = volumeIsRemovableBit;
constexpr std::uint32_t external = volumeIsOnExternalBusBit;

class Menu : public Resident {
protected:
    VolumeFacts &add(const char *name, std::uint32_t bits) {
        VolumeFacts &facts = volumes->add(std::string("/media/") + name);
        facts.name = name;
        facts.extendedAttributes = bits;
        return facts;
    }
};

TEST_F(Menu, ReadsSectionsInTheirOrder) {
    add("image", removable);
    add("server", 0).serverAddress = 1;
    add("disc", 0).optical = OpticalMedia::Yes;
    add("stick", external);
    add("second", 0);
    launch();
    EXPECT_EQ(lines().join(QLatin1Char('|')),
              QStringLiteral("= LOCAL_STORAGE|root|second|= EXTERNAL_STORAGE|stick|"
                             "= SUPER_DRIVER|disc|= NETWOR_STORAGE|server|= DISK_IMAGE|image|"
                             "= FREE_MEMORY|Memory|-|Eject All|-|Main Window|Launch at login|-|"
                             "Quit Brightsweep"));
    std::vector<int> tags;
    for (const MenuItem &each : delegate->menu().rows())
        tags.push_back(each.ViewTag);
    EXPECT_EQ(tags, (std::vector<int>{0, 5, 4, 3, 2, 1, 5}));
    // The sixth volume's row ignores clicks just as the memory's does.
    for (std::size_t i = 0; i < tags.size(); ++i)
        delegate->menu().clickRow(i);
    EXPECT_EQ(workspace->opened.size(), 5u);
}

TEST_F(Menu, EjectAllIsGreyWithLocalVolumesAlone) {
    add("ejectable local", ejectable);
    launch();
    EXPECT_TRUE(lines().contains(QStringLiteral("Eject All (grey)")));
    delegate->menu().activate(MenuAction::EjectAll);
    EXPECT_TRUE(volumes->ejected.empty());
}

TEST_F(Menu, RowsWarnExactlyAtTheAlarm) {
    const struct {
        const char *what;
        std::uint32_t server;
        OpticalMedia optical;
        std::uint32_t bits;
        std::uint64_t total;
        std::uint64_t free;
        float alarm;
        const char *image;
        bool warns;
    } table[] = {
        {"local at the alarm", 0, OpticalMedia::No, 0, 1000, 100, 0.1f, "90-1.png", true},
        {"rounded down to the alarm", 0, OpticalMedia::No, 0, 1000, 109, 0.1f, "90-1.png", true},
        {"just above", 0, OpticalMedia::No, 0, 1000, 110, 0.1f, "89.png", false},
        {"external at the alarm", 0, OpticalMedia::No, external, 1000, 100, 0.1f, "90-1.png", true},
        {"a float that is not exact", 0, OpticalMedia::No, 0, 100, 29, 0.29f, "71-1.png", true},
        {"above that", 0, OpticalMedia::No, 0, 100, 30, 0.29f, "70.png", false},
        {"almost nothing free", 0, OpticalMedia::No, 0, 1000, 4, 0.01f, "100-1.png", true},
        {"optical never", 0, OpticalMedia::Yes, 0, 1000, 0, 0.5f, "100.png", false},
        {"network never", 1, OpticalMedia::No, 0, 1000, 0, 0.5f, "100.png", false},
        {"disk image never", 0, OpticalMedia::No, removable, 1000, 0, 0.5f, "100.png", false},
        {"free above total", 0, OpticalMedia::No, 0, 1000, 1001, 0.1f, "", false},
        {"all free", 0, OpticalMedia::No, 0, 1000, 1000, 0.1f, "0.png", false},
        {"beyond what a product holds", 0, OpticalMedia::No, 0, ~0ull, ~0ull / 20, 0.1f, "96-1.png",
         true},
    };
    for (const auto &line : table) {
        SCOPED_TRACE(line.what);
        UserDefaults::standardUserDefaults().setObject(DSSpaceAlarmKey, line.alarm);
        volumes->mounted.resize(1);
        VolumeFacts &facts = add("v", line.bits);
        facts.serverAddress = line.server;
        facts.optical = line.optical;
        facts.totalBytes = line.total;
        facts.freeBytes = line.free;
        launch();
        EXPECT_EQ(row(2).prograssImage, QLatin1String(line.image));
        EXPECT_EQ(row(2).warns(), line.warns);
        delegate->updateDataForMenuItem();
        EXPECT_EQ(row(2).prograssImage, QLatin1String(line.image)) << "after a refresh";
        delegate.reset();
    }
}

TEST_F(Menu, TheStatusItemShowsTheBootVolume) {
    const struct {
        std::uint64_t total;
        std::uint64_t free;
        const char *image;
        bool warning;
    } table[] = {
        {1000, 500, "50%.png", false},  {1000, 100, "90%-1.png", true},
        {1000, 109, "90%-1.png", true}, {1000, 110, "89%.png", false},
        {1000, 0, "100%-1.png", true},  {1000, 1001, "", false},
    };
    launch();
    int warnings = 0;
    QObject::connect(delegate.get(), &AppDelegate::statusWarningChanged, [&] { ++warnings; });
    for (const auto &line : table) {
        SCOPED_TRACE(line.image);
        volumes->mounted[0].totalBytes = line.total;
        volumes->mounted[0].freeBytes = line.free;
        delegate->updateDataForMenuItem();
        EXPECT_EQ(delegate->getStatusImage(), QLatin1String(line.image));
        EXPECT_EQ(item->images.empty() ? std::string() : item->images[0].argb, line.image);
        EXPECT_EQ(delegate->getWarningValue(), line.warning);
    }
    EXPECT_EQ(warnings, 5);
    // Without a capacity it is not listed, and then there is no boot volume.
    volumes->mounted[0].totalBytes = 0;
    delegate->updateDataForMenuItem();
    EXPECT_EQ(delegate->getStatusImage(), QString());
    EXPECT_TRUE(item->images.empty());
}

TEST_F(Menu, ToolTipsHoldPlainText) {
    const std::string hostile = "<b>50% & %n</b>\n";
    volumes->mounted[0].name = hostile;
    launch();
    EXPECT_EQ(item->toolTip, QStringLiteral("TotalSize:2.00 GB\nFreeSize:500.00 MB"));
    delegate->updateDataForMenuItem();
    EXPECT_EQ(item->toolTip, QString::fromStdString(hostile) +
                                 QStringLiteral("\nTotal Size:2.00 GB\nFree Space:500.00 MB"));
    EXPECT_EQ(row(1).volumeSize, QString::fromStdString(hostile));
    EXPECT_EQ(item->title, QStringLiteral("500.00 MB / 2.00 GB"));
}

TEST_F(Menu, ARefreshWithoutChangeTellsNothing) {
    for (int i = 0; i < 19; ++i)
        add("v", external);
    launch();
    delegate->updateDataForMenuItem();
    item->changes = rowChanges = rebuilds = 0;
    notifier->shown.clear();
    for (int tick = 0; tick < 30; ++tick)
        delegate->updateDataForMenuItem();
    EXPECT_EQ(item->changes + rowChanges + rebuilds, 0);
    EXPECT_TRUE(notifier->shown.empty());
    // Bytes that no figure shows are no change; those that show are one.
    volumes->mounted[3].freeBytes += 1;
    delegate->updateDataForMenuItem();
    EXPECT_EQ(rowChanges, 0);
    volumes->mounted[3].freeBytes -= 100'000'000;
    delegate->updateDataForMenuItem();
    EXPECT_EQ(rowChanges, 1);
    EXPECT_EQ(item->changes + rebuilds, 0);
    EXPECT_EQ(row(4).u64FreeSpace, QStringLiteral("400.00 MB"));
}

TEST_F(Menu, OnlyTheCountRebuilds) {
    add("first", external);
    launch();
    rebuilds = closings = 0;
    volumes->mounted[1].refNumber = 9;
    volumes->mounted[1].name = "another";
    delegate->updateDataForMenuItem();
    EXPECT_EQ(rebuilds, 0);
    EXPECT_TRUE(lines().contains(QStringLiteral("first")));
    add("third", external);
    delegate->updateDataForMenuItem();
    EXPECT_EQ(rebuilds, 1);
    EXPECT_EQ(closings, 1);
    EXPECT_TRUE(lines().contains(QStringLiteral("another")));
    EXPECT_TRUE(lines().contains(QStringLiteral("third")));
}

TEST_F(Menu, TheMemorysRow) {
    launch();
    const MenuItem &shown = *delegate->menu().memoryItem();
    EXPECT_EQ(shown.u64FreeSpace, QStringLiteral("2.00 GB"));
    EXPECT_EQ(shown.nFreeSize, 2'000'000'000u) << "its words, read as decimal";
    EXPECT_EQ(shown.nTotalSize, UtilityFunction::getVolSpaceFromString(shown.u64TotalSpace));
    EXPECT_EQ(shown.toolTip, QStringLiteral("Free: 400.00 KB, inactive: 200.00 KB"));
    EXPECT_EQ(shown.icon, QStringLiteral("freememory.png"));
    // The system's own release tool, as this test has it.
    TestTree tree(TestEnvironment::current().system());
    const auto ran = tree.path("ran");
    tree.file("usr/bin/purge", "#!/bin/sh\n: > " + ran.native() + "\n");
    tree.mode("usr/bin/purge", 0755);
    delegate->menu().cleanMemoryButtonClick();
    EXPECT_EQ(delegate->menu().memoryItem()->volumeSize, QStringLiteral("Freeing..."));
    EXPECT_FALSE(UtilityObject::getMyObject().isFristOpenTimeInMenuItem);
    memory->readings = 0;
    delegate->updateDataForMenuItem();
    EXPECT_EQ(memory->readings, 1) << "the release is to be collected";
    EXPECT_EQ(delegate->menu().memoryItem()->volumeSize, QStringLiteral("Memory"));
    const auto readsNothing = [&] {
        memory->readings = 0;
        delegate->updateDataForMenuItem();
        return memory->readings == 0;
    };
    EXPECT_TRUE(eventually(readsNothing)) << "nobody sees it";
    EXPECT_TRUE(std::filesystem::exists(ran));
    memory->available = 4 << 20;
    delegate->menu().menuWillOpen();
    EXPECT_EQ(delegate->menu().memoryItem()->u64FreeSpace, QStringLiteral("4.00 MB"));
    memory->available = 8 << 20;
    delegate->updateDataForMenuItem();
    EXPECT_EQ(delegate->menu().memoryItem()->u64FreeSpace, QStringLiteral("8.00 MB"));
}

TEST_F(Menu, TheMemorysRowWarnsByItsOwnAlarm) {
    UserDefaults &defaults = UserDefaults::standardUserDefaults();
    launch();
    const std::uint64_t total =
        delegate->menu().memoryItem()->nTotalSize * 1024 / 1000 * 1024 / 1000 * 1024 / 1000;
    const struct {
        float space, memory;
        std::uint64_t percentFree;
        bool warns;
    } table[] = {{0.9f, 0.2f, 40, false}, {0.1f, 0.5f, 40, true}, {0.9f, 0.1f, 5, true}};
    delegate->menu().menuWillOpen();
    for (const auto &line : table) {
        defaults.setObject(DSSpaceAlarmKey, line.space);
        defaults.setObject(DSMemoryAlarmKey, line.memory);
        memory->figures = MemoryCounts{.free = 1};
        memory->available = total / 100 * line.percentFree;
        delegate->updateDataForMenuItem();
        EXPECT_EQ(delegate->menu().memoryItem()->warns(), line.warns) << line.percentFree;
    }
}

TEST_F(Menu, AReleaseThatCouldDoNothingIsSaidUntilItWasSeen) {
    launch();
    TestTree tree(TestEnvironment::current().system());
    tree.file("usr/bin/purge", "#!/bin/sh\nexit 1\n");
    const auto says = [&] {
        delegate->updateDataForMenuItem();
        return !delegate->menu().memoryItem()->showsFigures();
    };
    // Both one that fails and one that cannot be started.
    for (const int mode : {0755, 0}) {
        tree.mode("usr/bin/purge", mode);
        delegate->menu().menuWillOpen();
        EXPECT_FALSE(says());
        delegate->menu().cleanMemoryButtonClick();
        EXPECT_TRUE(eventually(says));
        EXPECT_TRUE(says());
        delegate->menu().menuDidClose();
    }
}

TEST_F(Menu, MountsAreToldInABubble) {
    launch();
    QStringList posts;
    QObject context;
    for (const QLatin1String name :
         {refMenuItemWhenDeleteAndAddNotification, updateSizeViewNotification})
        NotificationCenter::defaultCenter().addObserver(
            &context, name, [&](const Notification &each) { posts += each.name; });
    rebuilds = 0;
    volumes->mountHandler({true, "50% <i>&</i>", "/media/x"});
    volumes->mountHandler({false, "", "/media/x"});
    EXPECT_EQ(bubbles, (QStringList{QStringLiteral("50% <i>&</i> is mounted successfully!"),
                                    QStringLiteral("Your disk is unmounted successfully!")}));
    EXPECT_EQ(posts.mid(0, 2),
              (QStringList{refMenuItemWhenDeleteAndAddNotification, updateSizeViewNotification}));
    EXPECT_EQ(rebuilds, 2);
    volumes->factsHandler();
    EXPECT_EQ(rebuilds, 3);
}

TEST_F(Menu, AVolumeThatCannotBeOpenedIsSaid) {
    launch();
    QStringList alerts;
    QObject::connect(delegate.get(), &AppDelegate::alertRequested,
                     [&](const QString &text) { alerts += text; });
    delegate->menu().clickRow(0);
    EXPECT_EQ(workspace->opened, (std::vector<std::filesystem::path>{"/"}));
    EXPECT_TRUE(alerts.isEmpty());
    workspace->works = false;
    delegate->menu().clickRow(0);
    EXPECT_EQ(alerts.size(), 1);
    EXPECT_EQ(closings, 2);
}

TEST_F(Menu, AnEjectRunsBesideTheMainThread) {
    std::promise<void> reached;
    std::promise<void> open;
    volumes->beforeEject = [&] {
        reached.set_value();
        open.get_future().wait();
    };
    add("stick", external);
    launch();
    delegate->menu().backDisk(rowIndex(2));
    EXPECT_EQ(closings, 1);
    reached.get_future().wait();
    EXPECT_EQ(row(2).stateText(), QStringLiteral("Ejecting…"));
    // A second click, a refresh and a rebuild change nothing of it.
    delegate->menu().backDisk(rowIndex(2));
    delegate->updateDataForMenuItem();
    delegate->refMenuItemWhenDeleteAndAdd();
    EXPECT_TRUE(row(2).isEjecting);
    open.set_value();
    EXPECT_TRUE(eventually([&] { return !delegate->menu().itemWithVolume(2); }));
    EXPECT_EQ(volumes->ejected.size(), 1u);
    EXPECT_TRUE(bubbles.isEmpty());
}

TEST_F(Menu, ADeviceThatGoesDuringItsEjectIsNoFailure) {
    std::promise<void> reached;
    std::promise<void> open;
    volumes->beforeEject = [&] {
        reached.set_value();
        open.get_future().wait();
    };
    volumes->refusals[2] = {ENODEV, "no such device", {}};
    add("stick", external);
    launch();
    delegate->menu().backDisk(rowIndex(2));
    reached.get_future().wait();
    volumes->remove(2);
    delegate->updateDataForMenuItem();
    EXPECT_EQ(delegate->menu().itemWithVolume(2), nullptr);
    rebuilds = 0;
    open.set_value();
    EXPECT_TRUE(eventually([&] { return rebuilds > 0; }));
    EXPECT_TRUE(bubbles.isEmpty());
}

TEST_F(Menu, ARefusalSaysWhoHoldsTheVolumeOrThatTheDriveStays) {
    const struct {
        EjectResult refusal;
        const char *bubble;
    } rows[] = {
        {{EBUSY, "busy", {"editor", "sh\xff"}, false},
         "stick cannot be ejected.\nIn use by editor, sh\ufffd"},
        {{EPERM, "not allowed", {}, true}, "stick is unmounted.\nIts drive could not be released."},
        {{0, "stays powered", {}, true}, "stick is unmounted.\nIts drive could not be released."},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.refusal.message);
        volumes->refusals[2] = row.refusal;
        volumes->mounted.resize(1);
        add("stick", external);
        launch();
        delegate->menu().backDisk(rowIndex(2));
        EXPECT_TRUE(eventually([&] { return !bubbles.isEmpty(); }));
        EXPECT_EQ(bubbles, QStringList(QString::fromUtf8(row.bubble)));
        EXPECT_EQ(delegate->menu().itemWithVolume(2) != nullptr, !row.refusal.driveStays);
        bubbles.clear();
        delegate.reset();
    }
}

TEST_F(Menu, EjectAllTriesEveryVolume) {
    volumes->refusals[2] = {EBUSY, "busy", {}};
    add("first", external);
    add("second", external);
    launch();
    delegate->menu().activate(MenuAction::EjectAll);
    EXPECT_TRUE(row(2).isEjecting);
    EXPECT_TRUE(lines().contains(QStringLiteral("Eject All (grey)")));
    EXPECT_TRUE(eventually([&] { return !delegate->menu().itemWithVolume(3); }));
    EXPECT_EQ(volumes->ejected, (std::vector<std::int16_t>{2, 3}));
    EXPECT_EQ(bubbles, QStringList(QStringLiteral("first cannot be ejected.")));
    EXPECT_TRUE(lines().contains(QStringLiteral("Eject All")));
}

TEST_F(Menu, NothingToEjectIsSaidInABubble) {
    add("fixed image", removable);
    launch();
    delegate->menu().activate(MenuAction::EjectAll);
    EXPECT_TRUE(eventually([&] { return !bubbles.isEmpty(); }));
    EXPECT_TRUE(lines().contains(QStringLiteral("Eject All")));
}

TEST_F(Menu, TheAlarmIsToldOnceUntilItHasRecovered) {
    ASSERT_TRUE(MacLog::createSupportFolder());
    add("stick", external).name = "<b>";
    add("image", removable).freeBytes = 0;
    launch();
    const auto percent = [&](std::uint64_t free) {
        volumes->mounted[1].freeBytes = volumes->mounted[1].totalBytes / 100 * free;
        delegate->updateDataForMenuItem();
        return notifier->shown.size();
    };
    const struct {
        std::uint64_t free;
        std::size_t told;
    } steps[] = {{11, 0}, {10, 1}, {5, 1}, {11, 1}, {12, 1}, {10, 1}, {13, 1}, {10, 2}};
    for (const auto &step : steps)
        EXPECT_EQ(percent(step.free), step.told) << step.free;
    EXPECT_TRUE(notifier->shown[0].body.startsWith(QStringLiteral("<b>: 200.00 MB of 2.00 GB")));
    EXPECT_EQ(notifier->shown[1].actionLabel, QStringLiteral("Scan"));
    window().toggleActivePreferenceView(QStringLiteral("memory"));
    QString token;
    QObject::connect(&window(), &DBPrefsWindowController::windowShown,
                     [&] { token = QString::fromStdString(window().takeActivationToken()); });
    notifier->shown[1].action("click");
    EXPECT_EQ(token, QStringLiteral("click"));
    EXPECT_EQ(window().currentPanel(), QStringLiteral("QC_FastClean"));
    // Neither a mount that comes back nor a program that starts anew tells it again.
    const VolumeFacts stick = volumes->mounted[1];
    volumes->mounted.erase(volumes->mounted.begin() + 1);
    delegate->updateDataForMenuItem();
    volumes->mounted.insert(volumes->mounted.begin() + 1, stick);
    delegate->updateDataForMenuItem();
    delegate.reset();
    AppPrefsWindowController::resetSharedPrefsWindowController();
    launch();
    delegate->updateDataForMenuItem();
    EXPECT_EQ(notifier->shown.size(), 2u);
    // Another boot.
    FakeFacts::install().value = [](auto) { return std::string("other"); };
    delegate.reset();
    launch();
    delegate->updateDataForMenuItem();
    EXPECT_EQ(notifier->shown.size(), 3u);
}

TEST_F(Menu, TheStatusItemIsHiddenAndShown) {
    UserDefaults::standardUserDefaults().setObject(QStringLiteral("DSShowStatusItem"), true);
    launch();
    EXPECT_FALSE(item->shown);
    delegate->updateDataForMenuItem();
    EXPECT_FALSE(item->shown);
    const auto post = [](bool hidden) {
        NotificationCenter::defaultCenter().post(setStatusBarHiddenNotification, nullptr,
                                                 {{QStringLiteral("object"), hidden}});
    };
    post(false);
    EXPECT_TRUE(item->shown);
    post(true);
    EXPECT_FALSE(item->shown);
}

TEST_F(Menu, SettingsOfAnotherProcessAreUsedAtOnce) {
    launch();
    NewMainViewController &page =
        *AppPrefsWindowController::sharedPrefsWindowController().v4MainView();
    EXPECT_TRUE(item->shown);
    EXPECT_TRUE(page.row(0).isTicked());
    UserDefaults other(UserDefaults::standardUserDefaults().file());
    other.setObject(DSShowStatusItem, true);
    other.setObject(DSSystemCachesKey, 0);
    other.setObject(DSSpaceAlarmKey, 1.0F);
    waitUntil([&] { return !item->shown && !page.row(0).isTicked(); });
    EXPECT_TRUE(item->images[0].argb.ends_with("%-1.png"));
}

} // namespace
} // namespace brightsweep::test
